#pragma once

#include <QElapsedTimer>
#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QObject>
#include <functional>

// Plays a scenario: a JSON object whose "steps" are run at their "at"
// milliseconds, each by the action its "do" names. Unknown actions are
// reported and skipped. `speed` divides every wait of the scenario.
class ScenarioPlayer : public QObject
{
    Q_OBJECT
public:
    using Action = std::function<void(const QJsonObject& step)>;

    explicit ScenarioPlayer(QObject* parent = nullptr);

    // Reads a scenario from a file or a resource; false, with `error` set, if it is no scenario.
    bool load(const QString& path, QString* error);
    QJsonObject scenario() const { return m_scenario; }

    void addAction(const QString& name, Action action);
    void setSpeed(double speed) { m_speed = speed > 0 ? speed : 1.0; }
    void start();

signals:
    void stepStarted(int index, const QJsonObject& step);
    void finished();

private:
    void scheduleStep(int index);
    void runStep(int index);

    QJsonObject m_scenario;
    QJsonArray m_steps;
    QHash<QString, Action> m_actions;
    double m_speed = 1.0;
    QElapsedTimer m_clock;
};

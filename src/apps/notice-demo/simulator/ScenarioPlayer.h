#pragma once

#include <QElapsedTimer>
#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QObject>
#include <functional>

// Plays a checked scenario (see ScenarioChecker): its "steps" run in file
// order, each not before its "at" milliseconds, by the action its "do" names.
// `speed` divides every wait of the scenario. The scenario's clock stands
// still while a step runs, so a step that takes long (a screenshot waiting
// for the windows to settle) doesn't squeeze the steps after it together.
class ScenarioPlayer : public QObject
{
    Q_OBJECT
public:
    using Action = std::function<void(const QJsonObject& step)>;

    explicit ScenarioPlayer(const QJsonObject& scenario, QObject* parent = nullptr);

    QJsonObject scenario() const { return m_scenario; }
    void addAction(const QString& name, Action action);
    // The scenario format's actions that nothing has registered; empty when the player is complete.
    QStringList missingActions() const;
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
    qint64 m_timeInSteps = 0;
};

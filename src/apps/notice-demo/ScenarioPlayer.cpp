#include "ScenarioPlayer.h"

#include <QFile>
#include <QJsonDocument>
#include <QTimer>

ScenarioPlayer::ScenarioPlayer(QObject* parent)
    : QObject(parent)
{
}

bool ScenarioPlayer::load(const QString& path, QString* error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("cannot open %1").arg(path);
        return false;
    }
    QJsonParseError parseError;
    const QJsonDocument doc = QJsonDocument::fromJson(file.readAll(), &parseError);
    if (!doc.isObject()) {
        *error = QStringLiteral("%1: %2").arg(path, parseError.errorString());
        return false;
    }
    m_scenario = doc.object();
    m_steps = m_scenario.value(QStringLiteral("steps")).toArray();
    if (m_steps.isEmpty()) {
        *error = QStringLiteral("%1: no steps").arg(path);
        return false;
    }
    return true;
}

void ScenarioPlayer::addAction(const QString& name, Action action)
{
    m_actions.insert(name, std::move(action));
}

void ScenarioPlayer::start()
{
    m_clock.start();
    scheduleStep(0);
}

// Steps run one after another in file order, each not before its own time,
// so a slow step (a screenshot) can't let a later one overtake it.
void ScenarioPlayer::scheduleStep(int index)
{
    if (index >= m_steps.size()) {
        emit finished();
        return;
    }
    const int at = int(m_steps.at(index).toObject().value(QStringLiteral("at")).toInt() / m_speed);
    const qint64 wait = qMax<qint64>(0, at - m_clock.elapsed());
    QTimer::singleShot(int(wait), this, [this, index]() {
        runStep(index);
        scheduleStep(index + 1);
    });
}

void ScenarioPlayer::runStep(int index)
{
    const QJsonObject step = m_steps.at(index).toObject();
    emit stepStarted(index, step);
    const QString name = step.value(QStringLiteral("do")).toString();
    auto action = m_actions.constFind(name);
    if (action == m_actions.constEnd())
        qWarning() << "scenario: unknown action" << name << "in step" << index;
    else
        (*action)(step);
}

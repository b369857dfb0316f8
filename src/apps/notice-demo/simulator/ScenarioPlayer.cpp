#include "ScenarioPlayer.h"

#include "ScenarioFormat.h"

#include <QTimer>

ScenarioPlayer::ScenarioPlayer(const QJsonObject& scenario, QObject* parent)
    : QObject(parent)
    , m_scenario(scenario)
    , m_steps(scenario.value(QStringLiteral("steps")).toArray())
{
}

void ScenarioPlayer::addAction(const QString& name, Action action)
{
    m_actions.insert(name, std::move(action));
}

QStringList ScenarioPlayer::missingActions() const
{
    QStringList missing;
    for (const ScenarioFormat::Action& action : ScenarioFormat::actions()) {
        if (!m_actions.contains(action.name))
            missing << action.name;
    }
    return missing;
}

void ScenarioPlayer::start()
{
    m_clock.start();
    m_timeInSteps = 0;
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
    const qint64 wait = qMax<qint64>(0, at - (m_clock.elapsed() - m_timeInSteps));
    QTimer::singleShot(int(wait), this, [this, index]() {
        runStep(index);
        scheduleStep(index + 1);
    });
}

void ScenarioPlayer::runStep(int index)
{
    const QJsonObject step = m_steps.at(index).toObject();
    QElapsedTimer running;
    running.start();
    emit stepStarted(index, step);
    // The checker has seen every name and missingActions() every handler, so this always finds one.
    const auto action = m_actions.constFind(step.value(QStringLiteral("do")).toString());
    if (action != m_actions.constEnd())
        (*action)(step);
    m_timeInSteps += running.elapsed();
}

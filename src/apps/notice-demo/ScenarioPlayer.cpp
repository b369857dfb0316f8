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
    m_remaining = m_steps.size();
    for (int i = 0; i < m_steps.size(); ++i) {
        const int at = m_steps.at(i).toObject().value(QStringLiteral("at")).toInt();
        QTimer::singleShot(int(at / m_speed), this, [this, i]() { runStep(i); });
    }
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
    if (--m_remaining == 0)
        emit finished();
}

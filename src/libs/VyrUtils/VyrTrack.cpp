#include "VyrTrack.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

VyrTrack* VyrTrack::m_pInstance = nullptr;

VyrTrack::VyrTrack(QObject* parent)
    : QObject(parent)
{
}

VyrTrack* VyrTrack::instance()
{
    if (!m_pInstance)
        m_pInstance = new VyrTrack();
    return m_pInstance;
}

void VyrTrack::track(QString event, QMap<QString, QVariant> data)
{
    m_events.append(qMakePair(event, data));
    if (!m_logFile.isEmpty())
        appendToLog(event, data);
    emit tracked(event, data);
}

QList<VyrTrack::Event> VyrTrack::events() const
{
    return m_events;
}

void VyrTrack::clearEvents()
{
    m_events.clear();
}

void VyrTrack::setLogFile(const QString& path)
{
    m_logFile = path;
}

void VyrTrack::appendToLog(const QString& event, const QMap<QString, QVariant>& data)
{
    QFile file(m_logFile);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text)) {
        qWarning() << "track log not writable:" << m_logFile;
        return;
    }
    QJsonObject line;
    line.insert(QStringLiteral("event"), event);
    line.insert(QStringLiteral("data"), QJsonObject::fromVariantMap(data));
    file.write(QJsonDocument(line).toJson(QJsonDocument::Compact));
    file.write("\n");
}

#pragma once

#include <QList>
#include <QMap>
#include <QObject>
#include <QPair>
#include <QString>
#include <QVariant>

/**
 * The client's usage tracker. Every event is kept in memory and signalled.
 *
 * Host side:
 *   events()            every event tracked so far, oldest first
 *   clearEvents()       forget them
 *   setLogFile(path)    also append each event to `path` as one JSON line
 *                       {"event": name, "data": {...}}; an empty path stops it
 *   signal tracked()    emitted for each event
 */
class VyrTrack : public QObject
{
    Q_OBJECT
public:
    using Event = QPair<QString, QMap<QString, QVariant>>;

    static VyrTrack* instance();

    void track(QString event, QMap<QString, QVariant> data);

    // Host side.
    QList<Event> events() const;
    void clearEvents();
    void setLogFile(const QString& path);

signals:
    void tracked(const QString& event, const QVariantMap& data);

private:
    explicit VyrTrack(QObject* parent = nullptr);
    void appendToLog(const QString& event, const QMap<QString, QVariant>& data);

    static VyrTrack* m_pInstance;
    QList<Event> m_events;
    QString m_logFile;
};

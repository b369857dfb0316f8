#pragma once

#include <QDateTime>
#include <QObject>
#include <QString>
#include <optional>

namespace VyrEngine {

/**
 * The client's core engine: its clock and the signed-in user.
 *
 * Host side:
 *   setCurrentTime(secs)   stop the engine's clock at `secs` since the epoch
 *   advanceTime(secs)      move a stopped clock on (or back, if negative)
 *   useSystemClock()       follow the system clock again (the default)
 *   setCurrentUid(uid)     the signed-in user
 *   setFileServerPrefix(p) the file server's base address ("http://host:port"),
 *                          which fileServerPrefix() gives; empty until set
 */
class CoreEngine : public QObject
{
    Q_OBJECT
public:
    static CoreEngine* instance();

    qint64 currentTime() const;
    QDateTime currentDateTime() const;
    quint64 currentUid() const;
    /** What goes before a file's path on the file server (covers and the like). */
    QString fileServerPrefix() const;

    // Host side.
    void setCurrentTime(qint64 secsSinceEpoch);
    void advanceTime(qint64 secs);
    void useSystemClock();
    void setCurrentUid(quint64 uid);
    void setFileServerPrefix(const QString& prefix);

private:
    explicit CoreEngine(QObject* parent = nullptr);

    static CoreEngine* m_pInstance;
    std::optional<qint64> m_fixedTime;
    quint64 m_uid = 0;
    QString m_fileServerPrefix;
};

} // namespace VyrEngine

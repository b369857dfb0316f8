#pragma once

// Private to the library: where a file that a server names may be fetched from.

#include "VyrNoticeExport.h"

#include <QString>
#include <QUrl>

// A server names files by their path on the client's file server. The path is
// joined to the file server's address as the client joins its URLs, and the
// result is taken only while it stays on that server: same scheme, host and
// port, no user name, inside the address's folder. Anything else (no file
// server at all, a path that is itself an address such as "file:" or "data:",
// "//host", a "host:port" in front, dot segments, backslashes) is refused, so
// no request and no local read ever follows from it.
class VYRNOTICE_TESTS_EXPORT FileServerUrl
{
public:
    // The address of `path` on the file server at `prefix`; an empty QUrl and
    // the reason in `refusal` when it would leave that server.
    static QUrl resolve(const QString& prefix, const QString& path, QString* refusal);

private:
    static QString refusePrefix(const QUrl& prefix);
    static QString refusePath(const QString& path);
    static QString refuseJoined(const QUrl& prefix, const QUrl& joined);
};

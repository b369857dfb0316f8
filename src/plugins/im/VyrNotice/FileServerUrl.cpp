#include "FileServerUrl_p.h"

#include "VyrUtils.h"

#include <QStringList>

namespace {

int portOf(const QUrl& url)
{
    return url.port(url.scheme() == QLatin1String("https") ? 443 : 80);
}

bool hasBadCharacter(const QString& text)
{
    for (const QChar c : text) {
        if (c == QLatin1Char('\\') || c.unicode() < 0x20 || c.unicode() == 0x7f)
            return true;
    }
    return false;
}

// The folder a path must stay in: the prefix's path, ending in "/".
QString folderOf(const QUrl& prefix)
{
    QString folder = prefix.path(QUrl::FullyDecoded);
    if (!folder.endsWith(QLatin1Char('/')))
        folder += QLatin1Char('/');
    return folder;
}

} // namespace

QUrl FileServerUrl::resolve(const QString& prefix, const QString& path, QString* refusal)
{
    QString reason;
    const QUrl prefixUrl(prefix.trimmed());
    if (prefix.trimmed().isEmpty())
        reason = QStringLiteral("no file server address");
    else
        reason = refusePrefix(prefixUrl);
    if (reason.isEmpty())
        reason = refusePath(path);
    QUrl joined;
    if (reason.isEmpty()) {
        joined = QUrl(VyrUtils::urlSplicing({prefix.trimmed(), path}));
        reason = refuseJoined(prefixUrl, joined);
    }
    if (refusal)
        *refusal = reason;
    return reason.isEmpty() ? joined : QUrl();
}

QString FileServerUrl::refusePrefix(const QUrl& prefix)
{
    const QString scheme = prefix.scheme();
    if (!prefix.isValid() || (scheme != QLatin1String("http") && scheme != QLatin1String("https"))
        || prefix.host().isEmpty())
        return QStringLiteral("the file server address is no http address");
    if (!prefix.userInfo().isEmpty() || prefix.hasQuery() || prefix.hasFragment())
        return QStringLiteral("the file server address carries more than a folder");
    return QString();
}

QString FileServerUrl::refusePath(const QString& path)
{
    if (hasBadCharacter(path))
        return QStringLiteral("the path has a backslash or control character");
    if (path.startsWith(QLatin1String("//")))
        return QStringLiteral("the path names another host");
    // "file:", "data:", "http:" or "host:port" in front: an address, not a path.
    int start = 0;
    while (start < path.size() && path.at(start) == QLatin1Char('/'))
        ++start;
    const QString first = path.mid(start).section(QLatin1Char('/'), 0, 0);
    if (first.contains(QLatin1Char(':')))
        return QStringLiteral("the path is an address of its own");
    return QString();
}

QString FileServerUrl::refuseJoined(const QUrl& prefix, const QUrl& joined)
{
    if (!joined.isValid() || joined.scheme() != prefix.scheme() || joined.host() != prefix.host()
        || portOf(joined) != portOf(prefix) || !joined.userInfo().isEmpty())
        return QStringLiteral("the address leaves the file server");
    // Decoded, as a server would read it: "%2e%2e" is "..".
    const QString decoded = joined.path(QUrl::FullyDecoded);
    if (hasBadCharacter(decoded))
        return QStringLiteral("the path has a backslash or control character");
    const QStringList segments = decoded.split(QLatin1Char('/'));
    if (segments.contains(QStringLiteral("..")) || segments.contains(QStringLiteral(".")))
        return QStringLiteral("the path has dot segments");
    if (!decoded.startsWith(folderOf(prefix)))
        return QStringLiteral("the address leaves the file server's folder");
    return QString();
}

#include "HostName_p.h"

#include <QStringList>
#include <QUrl>

namespace {

bool fail(QString* reason, const QString& why)
{
    if (reason)
        *reason = why;
    return false;
}

bool isLetterDigitOrHyphen(QChar c)
{
    const ushort u = c.unicode();
    return (u >= 'a' && u <= 'z') || (u >= 'A' && u <= 'Z') || (u >= '0' && u <= '9') || u == '-';
}

} // namespace

bool HostName::isBare(const QString& domain, QString* reason)
{
    if (domain.isEmpty())
        return fail(reason, QStringLiteral("empty"));
    // Keeps the conversion cheap; the length that counts is the ASCII form's, below.
    if (domain.size() > 4 * MaxLength)
        return fail(reason, QStringLiteral("%1 characters long").arg(domain.size()));
    // The ASCII form is what a resolver sees; a name that has none isn't a host name.
    const QString ace = QUrl::toAce(domain);
    if (ace.isEmpty())
        return fail(reason, QStringLiteral("no valid ASCII form"));
    if (ace.size() > MaxLength)
        return fail(reason, QStringLiteral("longer than %1 characters").arg(MaxLength));
    const QStringList labels = ace.split(QLatin1Char('.'));
    for (const QString& label : labels) {
        if (label.isEmpty() || label.size() > MaxLabelLength)
            return fail(reason, QStringLiteral("a label of %1 characters").arg(label.size()));
        if (label.startsWith(QLatin1Char('-')) || label.endsWith(QLatin1Char('-')))
            return fail(reason, QStringLiteral("a label starts or ends with a hyphen"));
        for (const QChar c : label) {
            if (!isLetterDigitOrHyphen(c))
                return fail(reason, QStringLiteral("a character other than letters, digits, hyphens and dots"));
        }
    }
    return true;
}

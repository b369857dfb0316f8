#include "NameSpan_p.h"

#include "VyrUtils.h"

#include <QFontMetrics>
#include <QLocale>

QString NameSpan::quoted(const QString& markup, bool isChinaLocale)
{
    const QString form = isChinaLocale ? QStringLiteral("<span style='color: #009265;'>&nbsp;%1</span>")
                                       : QStringLiteral("<span style='color: #009265;'>&quot;%1&quot;</span>");
    return form.arg(markup);
}

QString NameSpan::padded(const QString& markup)
{
    return QStringLiteral("<span style='color: #009265;'>&nbsp;&nbsp;&quot;%1&quot;&nbsp;&nbsp;</span>").arg(markup);
}

QString NameSpan::plain(const QString& markup)
{
    return QStringLiteral("<span style='color: #009265;'>%1</span>").arg(markup);
}

QString NameSpan::elidedEscaped(const QString& name, const QFontMetrics& metrics, int width)
{
    return VyrUtils::escapeHtmlTag(metrics.elidedText(name, Qt::ElideRight, width));
}

bool NameSpan::isChina(const QLocale& locale)
{
    return locale.country() == QLocale::China;
}

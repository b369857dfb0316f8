#include "ClusterNoticeText_p.h"

#include <QFont>
#include <QFontMetrics>
#include <QStringList>
#include <QTextLayout>
#include <QTextOption>

namespace {

QFont fittingFont()
{
    QFont font;
    font.setPixelSize(ClusterNoticeText::FontPixelSize);
    font.setWeight(ClusterNoticeText::FontWeight);
    return font;
}

QTextOption fittingOption()
{
    QTextOption option(Qt::AlignLeft | Qt::AlignVCenter);
    option.setWrapMode(QTextOption::WrapAnywhere);
    option.setTextDirection(Qt::LeftToRight);
    return option;
}

// The last line shown: the rest of the paragraph, cut to the width. A
// continuation is marked whenever more text follows, even if the rest fits.
QString lastLine(const QString& tail, bool isLastParagraph, const QFontMetrics& metrics)
{
    const QString elided = metrics.elidedText(tail, Qt::ElideRight, ClusterNoticeText::LineWidth);
    if (elided == tail && isLastParagraph)
        return tail;
    return metrics.elidedText(tail + QStringLiteral("..."), Qt::ElideRight, ClusterNoticeText::LineWidth);
}

} // namespace

QString ClusterNoticeText::displayContent(const QString& content)
{
    return fit(QStringLiteral("[%1]%2").arg(qtTrId("ID_Cluster_Notice_Title_Notice", -1), content));
}

QString ClusterNoticeText::fit(const QString& source)
{
    const QFont font = fittingFont();
    const QFontMetrics metrics(font);
    const QTextOption option = fittingOption();
    const QStringList paragraphs = source.split(QLatin1Char('\n'));

    QString result;
    int count = 0;
    for (int p = 0; p < paragraphs.size() && count < MaxLines; ++p) {
        const QString& paragraph = paragraphs.at(p);
        const int left = MaxLines - count;
        int lineNumber = 1;

        QTextLayout layout(paragraph, font);
        layout.setTextOption(option);
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(LineWidth);
            QString text = paragraph.mid(line.textStart(), line.textLength());
            // Blank lines take no place.
            if (text.simplified().isEmpty())
                continue;
            if (lineNumber < left) {
                ++lineNumber;
                ++count;
                if (!text.endsWith(QLatin1Char('\n')))
                    text += QLatin1Char('\n');
                result += text;
                continue;
            }
            ++count;
            result += lastLine(paragraph.mid(line.textStart()), p == paragraphs.size() - 1, metrics);
            break;
        }
        layout.endLayout();
    }
    if (result.endsWith(QLatin1Char('\n')))
        result.chop(1);
    return result;
}

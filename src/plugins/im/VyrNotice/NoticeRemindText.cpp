#include "NoticeRemindText.h"

#include <QFontMetrics>
#include <QStringList>
#include <QTextLayout>
#include <QTextOption>

namespace {

// Qt lays out and elides mixed-direction and shaped text (Arabic joined by a
// zero-width joiner, conjoining jamo) a few pixels short of what the line
// then measures; such a line is cut again until it really fits. Ordinary
// text never comes here.
QString keepWithinWidth(const QString& line, const QFontMetricsF& metrics, const QFontMetrics& cutter)
{
    auto width = [&metrics](const QString& text) {
        QString shown = text;
        while (!shown.isEmpty() && shown.at(shown.size() - 1).isSpace())
            shown.chop(1);
        return metrics.horizontalAdvance(shown);
    };
    QString fitted = line;
    for (int limit = NoticeRemindText::LineWidth - 1; limit > 0 && width(fitted) >= NoticeRemindText::LineWidth + 1;
         limit -= 2)
        fitted = cutter.elidedText(line, Qt::ElideRight, limit);
    return fitted;
}

} // namespace

QFont NoticeRemindText::font()
{
    QFont font;
    font.setPixelSize(FontPixelSize);
    font.setWeight(FontWeight);
    return font;
}

QString NoticeRemindText::compose(const QString& nickname, const QString& message)
{
    return fit(nickname + QStringLiteral(": ") + message);
}

QString NoticeRemindText::fit(const QString& text)
{
    const QFont font = NoticeRemindText::font();
    const QFontMetrics metrics(font);
    QString flat = text;
    flat.replace(QStringLiteral("\n"), QStringLiteral(" "), Qt::CaseSensitive);
    // Intended: the split comes after the replace, so there is always one paragraph.
    const QStringList paragraphs = flat.split(QStringLiteral("\n"), Qt::KeepEmptyParts);

    // A word longer than the line is broken rather than left to run out of the label.
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);

    const QFontMetricsF exact(font);
    QString result;
    int linesDone = 0;
    for (const QString& paragraph : paragraphs) {
        if (linesDone >= MaxLines)
            break;
        int lineInParagraph = 1;
        const int remaining = MaxLines - linesDone;
        QTextLayout layout(paragraph, font);
        layout.setTextOption(option);
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(LineWidth);
            if (remaining <= lineInParagraph) {
                ++linesDone;
                const QString rest = paragraph.mid(line.textStart());
                const QString elided = metrics.elidedText(rest, Qt::ElideRight, LineWidth);
                if (rest == elided && paragraphs.size() <= linesDone)
                    result += keepWithinWidth(rest, exact, metrics);
                else
                    result += keepWithinWidth(metrics.elidedText(rest + QStringLiteral("..."), Qt::ElideRight, LineWidth),
                                              exact, metrics);
                break;
            }
            ++lineInParagraph;
            ++linesDone;
            result += keepWithinWidth(paragraph.mid(line.textStart(), line.textLength()), exact, metrics)
                + QStringLiteral("\n");
        }
        layout.endLayout();
    }
    if (result.endsWith(QStringLiteral("\n")))
        result.chop(1);
    return result;
}

#include "NoticeRemindText_p.h"

#include <QFontMetrics>
#include <QStringList>
#include <QTextLayout>

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

    QString result;
    int linesDone = 0;
    for (const QString& paragraph : paragraphs) {
        if (linesDone >= MaxLines)
            break;
        int lineInParagraph = 1;
        const int remaining = MaxLines - linesDone;
        // The layout's own word wrap: a word longer than the line stays whole on its line.
        QTextLayout layout(paragraph, font);
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(LineWidth);
            if (remaining <= lineInParagraph) {
                ++linesDone;
                const QString rest = paragraph.mid(line.textStart());
                const QString elided = metrics.elidedText(rest, Qt::ElideRight, LineWidth);
                if (rest == elided && paragraphs.size() <= linesDone)
                    result += rest;
                else
                    result += metrics.elidedText(rest + QStringLiteral("..."), Qt::ElideRight, LineWidth);
                break;
            }
            ++lineInParagraph;
            ++linesDone;
            result += paragraph.mid(line.textStart(), line.textLength()) + QStringLiteral("\n");
        }
        layout.endLayout();
    }
    if (result.endsWith(QStringLiteral("\n")))
        result.chop(1);
    return result;
}

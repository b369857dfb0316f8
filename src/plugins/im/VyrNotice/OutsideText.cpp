#include "OutsideText_p.h"

#include <QLabel>
#include <QTextDocument>

void OutsideText::makePlain(QLabel* label)
{
    label->setTextFormat(Qt::PlainText);
}

void OutsideText::setPlain(QLabel* label, const QString& text)
{
    makePlain(label);
    label->setText(text);
}

QString OutsideText::forAutoFormat(const QString& text)
{
    // What the widget would show as plain text stays byte for byte what it was.
    if (!Qt::mightBeRichText(text))
        return text;
    // Escaped inside one span that keeps blanks and line breaks as they were.
    return QStringLiteral("<span style='white-space:pre-wrap;'>%1</span>").arg(text.toHtmlEscaped());
}

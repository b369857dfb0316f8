#include "vyrmessagebox"

#include <QAbstractButton>
#include <QLocale>

namespace {
const char* const kClientTheme =
    "QMessageBox { background: #FFFFFF; }"
    "QMessageBox QLabel { color: #333333; font-size: 13px; }"
    "QMessageBox QPushButton { min-width: 72px; min-height: 28px; border: 1px solid #D3D3D3; border-radius: 4px;"
    " background: #FFFFFF; color: #333333; }"
    "QMessageBox QPushButton:hover { border-color: #009265; color: #009265; }"
    "QMessageBox QPushButton:default { background: #009265; border: none; color: #FFFFFF; }"
    "QMessageBox QPushButton:default:hover { background: #0C8962; }";

bool chinese()
{
    return QLocale().language() == QLocale::Chinese;
}
}

VyrMessageBox::VyrMessageBox(QWidget* parent, Theme theme, const QString& title, const QString& text,
                             QFlags<StandardButton> buttons, StandardButton defaultButton,
                             QSharedPointer<CustomMessageBoxPod> pod)
    : QMessageBox(NoIcon, title, text, buttons, parent)
    , m_theme(theme)
{
    if (defaultButton != NoButton)
        setDefaultButton(defaultButton);
    if (theme == ClientTheme)
        setStyleSheet(QString::fromLatin1(kClientTheme));
    applyButtonTexts(pod);
}

void VyrMessageBox::applyButtonTexts(const QSharedPointer<CustomMessageBoxPod>& pod)
{
    const bool zh = chinese();
    const struct
    {
        StandardButton button;
        QString text;
        QString custom;
    } table[] = {
        {Ok, zh ? QStringLiteral("确定") : QStringLiteral("OK"), pod ? pod->okText : QString()},
        {Yes, zh ? QStringLiteral("是") : QStringLiteral("Yes"), pod ? pod->yesText : QString()},
        {No, zh ? QStringLiteral("否") : QStringLiteral("No"), pod ? pod->noText : QString()},
        {Cancel, zh ? QStringLiteral("取消") : QStringLiteral("Cancel"), pod ? pod->cancelText : QString()},
    };
    for (const auto& row : table) {
        if (QAbstractButton* b = button(row.button))
            b->setText(row.custom.isEmpty() ? row.text : row.custom);
    }
}

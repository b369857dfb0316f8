#include "GlobalStyle.h"

#include <QApplication>
#include <QIcon>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>
#include <QWidget>

GlobalStyle* GlobalStyle::m_pInstance = nullptr;

namespace {

// A cross of two strokes, drawn for each device pixel ratio the icon is asked for.
QIcon crossIcon(const QColor& color, int size)
{
    QIcon icon;
    for (int ratio : {1, 2, 3}) {
        QPixmap pixmap(size * ratio, size * ratio);
        pixmap.setDevicePixelRatio(ratio);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(color, 1.4, Qt::SolidLine, Qt::RoundCap));
        const qreal inset = 1.5;
        painter.drawLine(QPointF(inset, inset), QPointF(size - inset, size - inset));
        painter.drawLine(QPointF(size - inset, inset), QPointF(inset, size - inset));
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

const char* const kStyleProperty = "GlobalStyle";

} // namespace

GlobalStyle::GlobalStyle()
{
    m_sheets.insert(QStringLiteral("QToolButton_CloseGrayBg"),
                    QStringLiteral("QToolButton { border: none; border-radius: 9px; background-color: #F0F1F3;"
                                   " padding: 0px; }"
                                   "QToolButton:hover { background-color: #E2E4E8; }"
                                   "QToolButton:pressed { background-color: #D3D6DB; }"));
    m_sheets.insert(QStringLiteral("QToolButton_SameMainWindowClose"),
                    QStringLiteral("QToolButton { border: none; background-color: transparent; }"
                                   "QToolButton:hover { background-color: #E5484D; }"
                                   "QToolButton:pressed { background-color: #C93C40; }"));
    m_sheets.insert(QStringLiteral("QLabel_IMMainStyle_Title"), QStringLiteral("QLabel { color: #1F2329; }"));
    m_sheets.insert(QStringLiteral("QLabel_MessageTitle"), QStringLiteral("QLabel { color: #1F2329; }"));
    m_sheets.insert(QStringLiteral("QPushButton_IMButton_Style1"),
                    QStringLiteral("QPushButton { color: white; background-color: #009265; border: none;"
                                   " border-radius: 4px; }"
                                   "QPushButton:hover { background-color: #00A673; }"
                                   "QPushButton:pressed { background-color: #007D56; }"));
    // The secondary button beside a Style1 one: white with a grey outline.
    m_sheets.insert(QStringLiteral("QPushButton_IMButton_Style4"),
                    QStringLiteral("QPushButton { color: #1F2329; background-color: #FFFFFF;"
                                   " border: 1px solid #D0D3D6; border-radius: 4px; }"
                                   "QPushButton:hover { color: #009265; border-color: #009265; }"
                                   "QPushButton:pressed { background-color: #F2F3F5; }"));
    // Body text of a notice, on a label or a read-only browser.
    m_sheets.insert(QStringLiteral("QLabel_MessageContent"),
                    QStringLiteral("QLabel, QTextBrowser { color: #646A73; background: transparent; border: none; }"));
    m_sheets.insert(QStringLiteral("QCheckBox_Normal"), QStringLiteral("QCheckBox { spacing: 6px; }"));
}

GlobalStyle* GlobalStyle::getInstance()
{
    if (!m_pInstance)
        m_pInstance = new GlobalStyle();
    return m_pInstance;
}

void GlobalStyle::applyCurrentStyle(QWidget* widget, const QString& styleName, bool repolish)
{
    if (!widget)
        return;
    widget->setProperty(kStyleProperty, styleName);
    auto sheet = m_sheets.constFind(styleName);
    if (sheet != m_sheets.constEnd())
        widget->setStyleSheet(*sheet);
    applyIcon(widget, styleName);
    if (repolish) {
        widget->style()->unpolish(widget);
        widget->style()->polish(widget);
        widget->update();
    }
}

void GlobalStyle::applyCurrentFontSize(QWidget* widget, int pixelSize, int weight)
{
    if (!widget)
        return;
    QFont font = QApplication::font();
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    widget->setFont(font);
}

void GlobalStyle::applyPushButtonAutoCalcSize(QPushButton* button)
{
    if (!button)
        return;
    const int padding = 12;
    const int needed = button->fontMetrics().horizontalAdvance(button->text()) + 2 * padding;
    if (button->minimumWidth() == button->maximumWidth()) {
        if (needed > button->minimumWidth())
            button->setFixedWidth(needed);
        return;
    }
    if (needed > button->minimumWidth())
        button->setMinimumWidth(needed);
    if (needed > button->width())
        button->resize(needed, button->height());
}

QStringList GlobalStyle::styleNames() const
{
    QStringList names = m_sheets.keys();
    names.sort();
    return names;
}

QString GlobalStyle::styleSheet(const QString& styleName) const
{
    return m_sheets.value(styleName);
}

void GlobalStyle::registerStyle(const QString& styleName, const QString& sheet)
{
    m_sheets.insert(styleName, sheet);
}

void GlobalStyle::applyIcon(QWidget* widget, const QString& styleName)
{
    auto* button = qobject_cast<QToolButton*>(widget);
    if (!button)
        return;
    if (styleName == QLatin1String("QToolButton_CloseGrayBg")) {
        button->setIcon(cachedIcon(styleName, QColor(0x86, 0x8C, 0x96), 8));
        button->setIconSize(QSize(8, 8));
    } else if (styleName == QLatin1String("QToolButton_SameMainWindowClose")) {
        button->setIcon(cachedIcon(styleName, QColor(0x64, 0x6A, 0x73), 10));
        button->setIconSize(QSize(10, 10));
    }
}

const QIcon& GlobalStyle::cachedIcon(const QString& styleName, const QColor& color, int size)
{
    auto icon = m_icons.find(styleName);
    if (icon == m_icons.end())
        icon = m_icons.insert(styleName, crossIcon(color, size));
    return *icon;
}

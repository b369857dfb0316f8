#include "VyrCustomNormalDialog.h"

#include "ICustomedTitleBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
const char* const kDialogStyle =
    "VyrCustomNormalDialog { background: #FFFFFF; border: 1px solid #DDDDDD; }"
    "QLabel#dialogTitle { font-size: 14px; color: #333333; }"
    "QPushButton#dialogClose { border: none; background: transparent; color: #999999; font-size: 16px; }"
    "QPushButton#dialogClose:hover { color: #333333; }";
}

VyrCustomNormalDialog::VyrCustomNormalDialog(Type type, QWidget* parent, Qt::WindowFlags flags,
                                             ICustomedTitleBar* titleBar, bool movable)
    : QDialog(parent, flags | Qt::Dialog | Qt::FramelessWindowHint)
    , m_customTitleBar(titleBar)
    , m_movable(movable)
{
    setStyleSheet(QString::fromLatin1(kDialogStyle));
    m_layout = new QVBoxLayout(this);
    m_layout->setContentsMargins(1, 1, 1, 1);
    m_layout->setSpacing(0);
    buildTitleBar(type);
}

void VyrCustomNormalDialog::buildTitleBar(Type type)
{
    if (m_customTitleBar) {
        m_layout->addWidget(m_customTitleBar->titleBarWidget());
        return;
    }
    if (type == NoTitleBar)
        return;
    auto* bar = new QWidget(this);
    bar->setFixedHeight(40);
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(16, 0, 8, 0);
    m_titleLabel = new QLabel(bar);
    m_titleLabel->setObjectName(QStringLiteral("dialogTitle"));
    row->addWidget(m_titleLabel, 1);
    if (type == TitleWithClose) {
        m_closeButton = new QPushButton(QStringLiteral("\u00D7"), bar);
        m_closeButton->setObjectName(QStringLiteral("dialogClose"));
        m_closeButton->setFixedSize(24, 24);
        m_closeButton->setAutoDefault(false);
        connect(m_closeButton, &QPushButton::clicked, this, &QDialog::reject);
        row->addWidget(m_closeButton);
    }
    m_layout->addWidget(bar);
}

void VyrCustomNormalDialog::setCenterWidget(QWidget* widget, bool fitToWidget)
{
    if (m_centerWidget) {
        m_layout->removeWidget(m_centerWidget);
        m_centerWidget->deleteLater();
    }
    m_centerWidget = widget;
    widget->setParent(this);
    m_layout->addWidget(widget, 1);
    if (fitToWidget)
        adjustSize();
}

QString VyrCustomNormalDialog::titleText() const
{
    return m_titleLabel ? m_titleLabel->text() : windowTitle();
}

void VyrCustomNormalDialog::setTitleText(const QString& text)
{
    setWindowTitle(text);
    if (m_customTitleBar)
        m_customTitleBar->setTitleText(text);
    else if (m_titleLabel)
        m_titleLabel->setText(text);
}

void VyrCustomNormalDialog::mousePressEvent(QMouseEvent* event)
{
    m_dragOffset = event->globalPos() - frameGeometry().topLeft();
    QDialog::mousePressEvent(event);
}

void VyrCustomNormalDialog::mouseMoveEvent(QMouseEvent* event)
{
    if (m_movable && (event->buttons() & Qt::LeftButton))
        move(event->globalPos() - m_dragOffset);
    QDialog::mouseMoveEvent(event);
}

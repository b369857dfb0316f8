#include "TeenModeWidget.h"

#include "TeenModePassword.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
const char* const kPanelStyle =
    "TeenModeWidget { background: #FFFFFF; }"
    "QLabel#teenModeHint { color: #333333; font-size: 13px; }"
    "QLabel#teenModeError { color: #E5483D; font-size: 12px; }"
    "QLineEdit { border: 1px solid #D3D3D3; border-radius: 4px; padding: 0px 8px; min-height: 30px; }"
    "QLineEdit:focus { border-color: #009265; }"
    "QPushButton { min-width: 72px; min-height: 28px; border: 1px solid #D3D3D3; border-radius: 4px;"
    " background: #FFFFFF; color: #333333; }"
    "QPushButton#teenModeConfirm { background: #009265; border: none; color: #FFFFFF; }";

bool chinese()
{
    return QLocale().language() == QLocale::Chinese;
}

QString tr2(const char* zh, const char* en)
{
    return chinese() ? QString::fromUtf8(zh) : QString::fromLatin1(en);
}

QString waitText(qint64 waitMs)
{
    const qint64 seconds = (waitMs + 999) / 1000;
    if (seconds < 60)
        return tr2("尝试次数过多，请%1秒后再试", "Too many wrong passwords. Try again in %1 s.").arg(seconds);
    return tr2("尝试次数过多，请%1分钟后再试", "Too many wrong passwords. Try again in %1 min.").arg((seconds + 59) / 60);
}
}

TeenModeWidget::TeenModeWidget(QWidget* parent, TeenModeState state)
    : QWidget(parent)
    , m_state(state)
    , m_passwordEdit(new QLineEdit(this))
    , m_errorLabel(new QLabel(this))
    , m_confirmButton(new QPushButton(tr2("确定", "OK"), this))
    , m_cancelButton(new QPushButton(tr2("取消", "Cancel"), this))
{
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(QString::fromLatin1(kPanelStyle));
    setFixedWidth(360);
    auto* hint = new QLabel(tr2("请输入独立密码", "Enter the separate password of the restricted mode"), this);
    hint->setObjectName(QStringLiteral("teenModeHint"));
    hint->setWordWrap(true);
    m_passwordEdit->setEchoMode(QLineEdit::Password);
    m_errorLabel->setObjectName(QStringLiteral("teenModeError"));
    m_confirmButton->setObjectName(QStringLiteral("teenModeConfirm"));
    m_confirmButton->setAutoDefault(false);
    m_cancelButton->setAutoDefault(false);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_cancelButton);
    buttons->addWidget(m_confirmButton);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 16, 24, 20);
    layout->setSpacing(10);
    layout->addWidget(hint);
    layout->addWidget(m_passwordEdit);
    layout->addWidget(m_errorLabel);
    layout->addLayout(buttons);

    connect(m_confirmButton, &QPushButton::clicked, this, &TeenModeWidget::onConfirm);
    connect(m_passwordEdit, &QLineEdit::returnPressed, this, &TeenModeWidget::onConfirm);
    connect(m_cancelButton, &QPushButton::clicked, this, [this]() { emit closeWidget(Cancelled); });
}

void TeenModeWidget::setPassword(const QString& password)
{
    TeenModePassword::set(password);
}

bool TeenModeWidget::checkPassword(const QString& password)
{
    return TeenModePassword::check(password) == TeenModePassword::Accepted;
}

QString TeenModeWidget::errorText() const
{
    return m_errorLabel->text();
}

QString TeenModeWidget::titleText() const
{
    switch (m_state) {
    case TeenModeSetPassword:
        return tr2("设置独立密码", "Set the separate password");
    case TeenModeChangePassword:
        return tr2("修改独立密码", "Change the separate password");
    case TeenModeVerifyPassword:
        break;
    }
    return tr2("验证独立密码", "Verify the separate password");
}

void TeenModeWidget::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    // Verifying is titled by whoever asks; the other states title themselves.
    if (!m_titleSent && m_state != TeenModeVerifyPassword) {
        m_titleSent = true;
        emit setTitle(titleText());
    }
    const qint64 waitMs = TeenModePassword::remainingDelayMs();
    if (waitMs > 0)
        m_errorLabel->setText(waitText(waitMs));
    m_passwordEdit->setFocus();
}

void TeenModeWidget::onConfirm()
{
    const TeenModePassword::Result result = TeenModePassword::check(m_passwordEdit->text());
    m_passwordEdit->clear();
    switch (result) {
    case TeenModePassword::Accepted:
        m_errorLabel->clear();
        emit closeWidget(PasswordAccepted);
        return;
    case TeenModePassword::Delayed:
        ++m_refusedAttempts;
        m_errorLabel->setText(waitText(TeenModePassword::remainingDelayMs()));
        return;
    case TeenModePassword::Wrong:
        break;
    }
    ++m_failedAttempts;
    const qint64 waitMs = TeenModePassword::remainingDelayMs();
    m_errorLabel->setText(waitMs > 0 ? waitText(waitMs) : tr2("密码错误，请重新输入", "Wrong password, please try again"));
}

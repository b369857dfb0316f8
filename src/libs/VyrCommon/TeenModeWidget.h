#pragma once

#include <QWidget>

class QLabel;
class QLineEdit;
class QPushButton;

/** What the restricted-mode (teen mode) widget is asked to do. The values are the client's own. */
enum TeenModeState
{
    TeenModeSetPassword = 0,
    TeenModeChangePassword = 1,
    TeenModeVerifyPassword = 2, // ask for the separate password before an action
};

/**
 * The restricted mode's password panel, placed inside a dialog by whoever
 * needs it. In TeenModeVerifyPassword it asks for the separate password:
 * the right one emits closeWidget(TeenModeWidget::PasswordAccepted); a wrong
 * one shows an error and stays; Cancel emits closeWidget(Cancelled). After too
 * many wrong passwords (TeenModePassword) it checks nothing until the delay has
 * run and says how long to wait instead. In the other states it emits setTitle
 * with the title of its state when first shown.
 *
 * Host side:
 *   TeenModeWidget::setPassword(text)   the separate password (salted and
 *                                       derived by TeenModePassword::set)
 *   checkPassword(text)                 TeenModePassword::check, delay included
 *   failedAttempts(), errorText()       wrong passwords so far, the error shown
 *   refusedAttempts()                   confirmations refused unchecked
 *   passwordEdit(), confirmButton(), cancelButton()
 */
class TeenModeWidget : public QWidget
{
    Q_OBJECT
public:
    enum CloseCode
    {
        Cancelled = 0,
        PasswordAccepted = 4,
    };

    TeenModeWidget(QWidget* parent, TeenModeState state);

    static void setPassword(const QString& password);
    static bool checkPassword(const QString& password);

    TeenModeState state() const { return m_state; }
    int failedAttempts() const { return m_failedAttempts; }
    int refusedAttempts() const { return m_refusedAttempts; }
    QString errorText() const;
    QLineEdit* passwordEdit() const { return m_passwordEdit; }
    QPushButton* confirmButton() const { return m_confirmButton; }
    QPushButton* cancelButton() const { return m_cancelButton; }

signals:
    void setTitle(const QString& title);
    void closeWidget(int code);

protected:
    void showEvent(QShowEvent* event) override;

private slots:
    void onConfirm();

private:
    QString titleText() const;

    TeenModeState m_state;
    QLineEdit* m_passwordEdit;
    QLabel* m_errorLabel;
    QPushButton* m_confirmButton;
    QPushButton* m_cancelButton;
    int m_failedAttempts = 0;
    int m_refusedAttempts = 0;
    bool m_titleSent = false;
};

#pragma once

#include <QList>
#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <functional>

class QMenu;

/**
 * The kit's answer hook for modal boxes, menus and dialogs. Every box, menu
 * and dialog of the client runs a real exec(); a test or a scripted demo that
 * must not wait for a person queues answers here. Each answer serves the next
 * box, menu or dialog that is shown, in order: once the widget is on screen,
 * the answer is applied from the event loop (inside that exec()) by pressing
 * the real button, choosing the real menu entry or typing into the real line
 * edit.
 *
 * Host side (GUI thread):
 *   VyrModalAnswerer::instance()->pressButton(QMessageBox::Yes)   the next box
 *   ...->chooseMenuEntry("Delete")     the next menu: the entry with that text
 *                                       (an unknown text closes the menu)
 *   ...->enterText("secret")           the next dialog: types into its first
 *                                       line edit and presses Return there
 *   ...->closeModal()                  the next box, menu or dialog is closed
 *   ...->answerWith(handler)           anything else: handler(widget) runs
 *                                       from the event loop once it is shown
 *   setCloseUnanswered(true)           a modal with no answer queued is closed
 *                                       (so a forgotten answer never hangs a test)
 *   pendingCount(), clear()            queued answers; clear drops them and the log
 *   seen()                             one line per modal shown while the hook was
 *                                       in use: "box <title> | <text>",
 *                                       "menu <entry> | <entry>...", "dialog <title>"
 *   signal modalShown(QWidget*)        each box, menu or dialog as it is shown
 * The helpers pressButtonOn, chooseMenuEntryOn, enterTextOn and closeModalOn
 * do the same to a given widget, for handlers with several steps.
 */
class VyrModalAnswerer : public QObject
{
    Q_OBJECT
public:
    using Handler = std::function<void(QWidget* modal)>;

    static VyrModalAnswerer* instance();

    void pressButton(QMessageBox::StandardButton button);
    void chooseMenuEntry(const QString& text);
    void enterText(const QString& text);
    void closeModal();
    void answerWith(Handler handler);

    void setCloseUnanswered(bool close);
    bool closeUnanswered() const { return m_closeUnanswered; }
    int pendingCount() const { return m_answers.size(); }
    void clear();
    QStringList seen() const { return m_seen; }

    static bool pressButtonOn(QWidget* modal, QMessageBox::StandardButton button);
    static bool chooseMenuEntryOn(QWidget* modal, const QString& text);
    static bool enterTextOn(QWidget* modal, const QString& text);
    static void closeModalOn(QWidget* modal);

signals:
    void modalShown(QWidget* modal);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit VyrModalAnswerer(QObject* parent = nullptr);
    void enqueue(Handler handler);
    void onModalShown(QWidget* modal);
    static QString describe(QWidget* modal);
    static QString plainText(const QString& text);

    static VyrModalAnswerer* m_pInstance;
    QList<Handler> m_answers;
    QStringList m_seen;
    bool m_installed = false;
    bool m_closeUnanswered = false;
};

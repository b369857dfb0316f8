#include "VyrModalAnswerer.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QTimer>

VyrModalAnswerer* VyrModalAnswerer::m_pInstance = nullptr;

VyrModalAnswerer* VyrModalAnswerer::instance()
{
    if (!m_pInstance)
        m_pInstance = new VyrModalAnswerer(qApp);
    return m_pInstance;
}

VyrModalAnswerer::VyrModalAnswerer(QObject* parent)
    : QObject(parent)
{
}

void VyrModalAnswerer::pressButton(QMessageBox::StandardButton button)
{
    enqueue([button](QWidget* modal) {
        if (!pressButtonOn(modal, button))
            closeModalOn(modal);
    });
}

void VyrModalAnswerer::chooseMenuEntry(const QString& text)
{
    enqueue([text](QWidget* modal) {
        if (!chooseMenuEntryOn(modal, text))
            closeModalOn(modal);
    });
}

void VyrModalAnswerer::enterText(const QString& text)
{
    enqueue([text](QWidget* modal) {
        if (!enterTextOn(modal, text))
            closeModalOn(modal);
    });
}

void VyrModalAnswerer::closeModal()
{
    enqueue(&VyrModalAnswerer::closeModalOn);
}

void VyrModalAnswerer::answerWith(Handler handler)
{
    enqueue(std::move(handler));
}

void VyrModalAnswerer::setCloseUnanswered(bool close)
{
    m_closeUnanswered = close;
    if (close && !m_installed) {
        qApp->installEventFilter(this);
        m_installed = true;
    }
}

void VyrModalAnswerer::clear()
{
    m_answers.clear();
    m_seen.clear();
}

void VyrModalAnswerer::enqueue(Handler handler)
{
    m_answers.append(std::move(handler));
    if (!m_installed) {
        qApp->installEventFilter(this);
        m_installed = true;
    }
}

bool VyrModalAnswerer::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Show && watched->isWidgetType()) {
        auto* widget = static_cast<QWidget*>(watched);
        // Sub-menus and plain dialogs' children also get Show; only windows count.
        if (widget->isWindow() && (qobject_cast<QMenu*>(widget) || qobject_cast<QDialog*>(widget)))
            onModalShown(widget);
    }
    return QObject::eventFilter(watched, event);
}

void VyrModalAnswerer::onModalShown(QWidget* modal)
{
    m_seen.append(describe(modal));
    emit modalShown(modal);
    Handler handler;
    if (!m_answers.isEmpty())
        handler = m_answers.takeFirst();
    else if (m_closeUnanswered)
        handler = &VyrModalAnswerer::closeModalOn;
    else
        return;
    // From the event loop, so the answer lands inside the widget's own exec().
    QPointer<QWidget> guard(modal);
    QTimer::singleShot(0, this, [guard, handler]() {
        if (guard && guard->isVisible())
            handler(guard);
    });
}

QString VyrModalAnswerer::plainText(const QString& text)
{
    QString plain = text;
    return plain.remove(QLatin1Char('&'));
}

QString VyrModalAnswerer::describe(QWidget* modal)
{
    if (auto* box = qobject_cast<QMessageBox*>(modal))
        return QStringLiteral("box %1 | %2").arg(box->windowTitle(), box->text());
    if (auto* menu = qobject_cast<QMenu*>(modal)) {
        QStringList entries;
        for (QAction* action : menu->actions()) {
            if (!action->isSeparator())
                entries.append(plainText(action->text()));
        }
        return QStringLiteral("menu %1").arg(entries.join(QStringLiteral(" | ")));
    }
    return QStringLiteral("dialog %1").arg(modal->windowTitle());
}

bool VyrModalAnswerer::pressButtonOn(QWidget* modal, QMessageBox::StandardButton button)
{
    auto* box = qobject_cast<QMessageBox*>(modal);
    QAbstractButton* target = box ? box->button(button) : nullptr;
    if (!target)
        return false;
    target->click();
    return true;
}

bool VyrModalAnswerer::chooseMenuEntryOn(QWidget* modal, const QString& text)
{
    auto* menu = qobject_cast<QMenu*>(modal);
    if (!menu)
        return false;
    for (QAction* action : menu->actions()) {
        if (action->isSeparator() || !action->isEnabled() || plainText(action->text()) != plainText(text))
            continue;
        // Chosen as a person with the keyboard would: highlight it, press Return.
        menu->setActiveAction(action);
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        QApplication::sendEvent(menu, &press);
        return true;
    }
    return false;
}

bool VyrModalAnswerer::enterTextOn(QWidget* modal, const QString& text)
{
    auto* edit = modal ? modal->findChild<QLineEdit*>() : nullptr;
    if (!edit)
        return false;
    edit->setFocus();
    edit->clear();
    edit->insert(text);
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(edit, &press);
    return true;
}

void VyrModalAnswerer::closeModalOn(QWidget* modal)
{
    if (auto* dialog = qobject_cast<QDialog*>(modal))
        dialog->reject();
    else if (modal)
        modal->close();
}

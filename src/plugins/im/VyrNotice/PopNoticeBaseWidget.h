#pragma once

#include "VyrNoticeExport.h"

#include <QFont>
#include <QMap>
#include <QMargins>
#include <QPoint>
#include <QString>
#include <QVariant>
#include <QWidget>

class QLabel;
class QPropertyAnimation;
class QTimer;
class QToolButton;

/**
 * The card that every single pop-up notice is: a frameless, always-on-top
 * tool window with a soft shadow, a title row with a close button and an
 * empty content panel that a subclass fills.
 *
 * A host creates a subclass, calls popNotice() once and keeps no pointer:
 * the window appears at the bottom right corner of the work area without
 * taking the focus, fades in over 500 ms, stays 15 seconds, fades out over
 * 500 ms, closes and deletes itself. The close button and a log-out of the
 * client (ImSignalObject::signalLogOut) close it at once, in any state. The
 * pointer on the card does not hold it open.
 *
 * A subclass fixes its size (card plus m_shadowMargins) before popNotice(),
 * calls setLayout() on m_contentWidget and sets the title with setWindowTitle().
 */
class VYRNOTICE_EXPORT PopNoticeBaseWidget : public QWidget
{
    Q_OBJECT

public:
    /** Builds the hidden card under @p parent (normally null); nothing is shown before popNotice(). */
    explicit PopNoticeBaseWidget(QWidget* parent = nullptr);
    /** The timer, the animations and the panels go with the window as its children. */
    ~PopNoticeBaseWidget() override;

    /**
     * Starts the window's life: places it in the corner and fades it in.
     * Meant to be called once; a second call starts a second fade-in.
     */
    void popNotice();
    /** Stores @p autoClose only: the timed close always runs. */
    void setAutoClose(bool autoClose);
    /** Sets @p title as the text of the title row (not the window system's title). */
    void setWindowTitle(QString title);
    /** Shows or hides the close button by @p visible; the title row keeps its height. */
    void setCloseBtnVisible(bool visible);
    /**
     * Sets @p style as @p widget's "PropertyStyle", which the card's style
     * sheet selects on. With @p repolish the change shows at once; without,
     * at the widget's next polish (the form to use before the first show).
     */
    void applyCurrentStyle(QWidget* widget, const QString& style, bool repolish);
    /** Gives @p widget a copy of the application font with @p pixelSize and @p weight. */
    void applyCurrentFontSize(QWidget* widget, int pixelSize, QFont::Weight weight);
    /**
     * Sends "PushSend" with the entries of @p data, the title as
     * "push_title" and a fresh "push_id". The caller's map is not changed.
     */
    void trackPushMessage(QMap<QString, QVariant>& data);

protected:
    /** Builds the title row, the content panel and the shadow border around them. */
    void initUi();
    /** The title row: the title's label and the close button. */
    QWidget* createTitleWidget();
    /** Sends "PushClick" with the entries of @p data, built as trackPushMessage() builds "PushSend". */
    void trackClickPushMessage(QMap<QString, QVariant>& data);

protected slots:
    /** Moves the card to the corner, shows it and starts the 500 ms fade-in. */
    void showAnimation();
    /** The fade-in has ended: deletes it and starts the 15-second hold. */
    void closePosAnimation();
    /** The fade-out has ended: deletes it and closes the window, which deletes itself. */
    void closeOpacityAnimation();
    /** The hold has run out: stops the timer and starts the 500 ms fade-out. */
    void startOpacityAnimation();

protected:
    /** Paints the shadow border around the card. */
    void paintEvent(QPaintEvent* event) override;

private:
    bool m_autoClose = true;
    QPropertyAnimation* m_showAnimation = nullptr;
    QPropertyAnimation* m_opacityAnimation = nullptr;
    QTimer* m_closeTimer = nullptr;
    QPoint m_startPos;
    QPoint m_endPos;
    QWidget* m_titleWidget = nullptr;
    QLabel* m_titleLabel = nullptr;

protected:
    /** The close button; subclasses connect their tracking to it. */
    QToolButton* m_closeBtn = nullptr;
    /** The empty panel under the title; a subclass calls setLayout() on it. */
    QWidget* m_contentWidget = nullptr;
    /** The transparent shadow border around the card: 10 pixels on each side. */
    QMargins m_shadowMargins;
};

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

// The card that every single pop-up notice is: a frameless, always-on-top
// tool window with a soft shadow, a title row with a close button and an
// empty content panel that a subclass fills.
//
// A host creates a subclass, calls popNotice() once and keeps no pointer:
// the window appears at the bottom right corner of the work area without
// taking the focus, fades in over 500 ms, stays 15 seconds, fades out over
// 500 ms, closes and deletes itself. The close button and a log-out of the
// client (ImSignalObject::signalLogOut) close it at once, in any state. The
// pointer on the card does not hold it open.
//
// A subclass fixes its size (card plus m_shadowMargins) before popNotice(),
// calls setLayout() on m_contentWidget and sets the title with setWindowTitle().
class VYRNOTICE_EXPORT PopNoticeBaseWidget : public QWidget
{
    Q_OBJECT
    // Lines the cards' white panels up with the other stacked windows.
    friend class NoticeStacker;

public:
    // Builds the hidden card; nothing is shown before popNotice().
    explicit PopNoticeBaseWidget(QWidget* parent = nullptr);
    ~PopNoticeBaseWidget() override;

    // Starts the window's life: places it in the corner and fades it in.
    // Meant to be called once; a second call starts a second fade-in.
    void popNotice();
    // Stored only: the timed close always runs.
    void setAutoClose(bool autoClose);
    // The text of the title row (not the window system's title).
    void setWindowTitle(QString title);
    // Shows or hides the close button; the title row keeps its height.
    void setCloseBtnVisible(bool visible);
    // Sets `style` as the widget's "PropertyStyle", which the card's style
    // sheet selects on. With `repolish` the change shows at once; without,
    // at the widget's next polish (the form to use before the first show).
    void applyCurrentStyle(QWidget* widget, const QString& style, bool repolish);
    // Gives `widget` a copy of the application font with this pixel size and weight.
    void applyCurrentFontSize(QWidget* widget, int pixelSize, QFont::Weight weight);
    // Sends "PushSend" with the caller's entries, the title as "push_title"
    // and a fresh "push_id". The caller's map is not changed.
    void trackPushMessage(QMap<QString, QVariant>& data);

protected:
    void initUi();
    QWidget* createTitleWidget();
    // Sends "PushClick", built as trackPushMessage() builds "PushSend".
    void trackClickPushMessage(QMap<QString, QVariant>& data);

protected slots:
    void showAnimation();
    void closePosAnimation();
    void closeOpacityAnimation();
    void startOpacityAnimation();

protected:
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
    // The close button; subclasses connect their tracking to it.
    QToolButton* m_closeBtn = nullptr;
    // The empty panel under the title; a subclass calls setLayout() on it.
    QWidget* m_contentWidget = nullptr;
    // The transparent shadow border around the card.
    QMargins m_shadowMargins = QMargins(10, 10, 10, 10);
};

#pragma once

#include "PopNoticeBaseWidget.h"
#include "TaskbarEdge.h"
#include "VyrTrack.h"

#include <QImage>
#include <QList>
#include <QPointer>
#include <QStringList>

class QPropertyAnimation;
class QTimer;
class QToolButton;
class QLabel;
class QPushButton;
class QTextBrowser;

// Test-side access to single pop-ups, through their public operations, their
// named children and the protected members a subclass reaches.
namespace PopupHarness {

// The simulated screen: 800 x 600, the taskbar's 40 pixels taken at `edge`.
void useTestScreen(TaskbarEdge edge = TaskbarEdge::Bottom);

// "m_showAnimation" or "m_opacityAnimation"; null when none is alive.
QPropertyAnimation* animation(QWidget* window, const char* name);
QList<QPropertyAnimation*> animations(QWidget* window, const char* name);
// The hold timer; null when none is alive.
QTimer* closeTimer(QWidget* window);
QList<QTimer*> closeTimers(QWidget* window);
QToolButton* closeButton(QWidget* window);
QLabel* titleLabel(QWidget* window);
// The named parts of a card, anywhere below the window; null when there is none.
QLabel* label(QWidget* window, const char* name);
QPushButton* button(QWidget* window, const char* name);
QTextBrowser* browser(QWidget* window, const char* name = "m_contentBrowser");
// The panel under the title row that a card fills.
QWidget* contentWidget(QWidget* window);
// Runs an animation to its end now, as if its 500 ms had passed.
void finish(QPropertyAnimation* animation);
// Runs the deletions that closing scheduled.
void runDeferredDeletes();
// "Built", "FadingIn", "Holding", "FadingOut" or "Closed" (for a null window).
QString stateOf(QWidget* window);
// The card grabbed as the screen would show it, with its transparent border,
// one pixel per logical pixel whatever the pixel ratio.
QImage grabCard(QWidget* window);
// The folder that VYR_SCREENSHOT_DIR names, made if need be; empty when it isn't set.
QString screenshotDir();
// Loads the texts of `language` ("en" or "zh_CN") and makes its country, the
// United States or China, the default locale.
bool useLanguage(const QString& language);
// The card as grabCard() gives it, 20 pixels in on a grey canvas, saved at `path` (to look at).
bool saveOnCanvas(QWidget* window, const QString& path);
// The "PushClick" events tracked so far, oldest first.
QList<VyrTrack::Event> clicks();

} // namespace PopupHarness

// The bare card at the size of the lesson cards, with the protected parts in reach.
class TestCard : public PopNoticeBaseWidget
{
    Q_OBJECT
public:
    explicit TestCard(QWidget* parent = nullptr);

    using PopNoticeBaseWidget::trackClickPushMessage;
    QToolButton* closeBtn() const { return m_closeBtn; }
    QWidget* contentWidget() const { return m_contentWidget; }
    QMargins shadowMargins() const { return m_shadowMargins; }
};

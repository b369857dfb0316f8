#include "NoticeLog_p.h"
#include "ShadowMask_p.h"

#include <QEvent>
#include <QGuiApplication>
#include <QRegion>
#include <QWidget>
#if defined(VYR_HAVE_X11EXTRAS)
#include <QX11Info>
#endif
#include <QtDebug>

namespace {

std::function<bool()>& decision()
{
    static std::function<bool()> s_decision;
    return s_decision;
}

bool composites()
{
    return decision() ? decision()() : ShadowMask::systemComposites();
}

// Lives as the window's child and watches it; goes with it.
class ShadowMaskFilter : public QObject
{
public:
    ShadowMaskFilter(QWidget* window, const QMargins& shadow)
        : QObject(window)
        , m_window(window)
        , m_shadow(shadow)
    {
        window->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched == m_window && (event->type() == QEvent::Show || event->type() == QEvent::Resize))
            apply();
        return false;
    }

private:
    void apply()
    {
        if (composites()) {
            if (!m_window->mask().isEmpty())
                m_window->clearMask();
            return;
        }
        const QRegion panel(m_window->rect().marginsRemoved(m_shadow));
        if (m_window->mask() != panel) {
            qCInfo(lcVyrNotice) << "no compositing manager: showing" << m_window->metaObject()->className()
                    << "without its shadow border";
            m_window->setMask(panel);
        }
    }

    QWidget* m_window;
    QMargins m_shadow;
};

} // namespace

namespace ShadowMask {

bool systemComposites()
{
#if defined(VYR_HAVE_X11EXTRAS)
    if (QGuiApplication::platformName() == QLatin1String("xcb"))
        return QX11Info::isCompositingManagerRunning(QX11Info::appScreen());
#endif
    return true;
}

void setDecision(std::function<bool()> decide)
{
    decision() = std::move(decide);
}

void follow(QWidget* window, const QMargins& shadow)
{
    new ShadowMaskFilter(window, shadow);
}

} // namespace ShadowMask

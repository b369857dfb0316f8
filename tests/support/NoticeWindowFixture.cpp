#include "NoticeWindowFixture.h"

#include "HostWiring.h"
#include "NoticeListWidget.h"
#include "NoticeWindowHarness.h"
#include "ScreenCornerOverride_p.h"
#include "TestKit.h"
#include "WindowSignalRecorder.h"

#include <QtTest>

namespace H = NoticeWindowHarness;

NoticeWindowFixture::NoticeWindowFixture(Options options)
    : m_options(options)
{
}

NoticeWindowFixture::~NoticeWindowFixture() = default;

void NoticeWindowFixture::init()
{
    TestKit::resetAll();
    H::useTestScreen();
    H::movePointer(H::pointOffWindows());
}

void NoticeWindowFixture::cleanup()
{
    m_window.reset();
    m_other.reset();
    m_recorder = nullptr;
    ScreenCornerOverride::clear();
    H::movePointer(H::pointOffWindows());
    TestKit::resetAll();
}

NoticeListWidget* NoticeWindowFixture::makeWindow(VyrEngine::NoticeCategory category)
{
    m_window.reset(new NoticeListWidget(category));
    m_recorder = m_options.testFlag(RecordSignals) ? new WindowSignalRecorder(m_window.get()) : nullptr;
    if (m_options.testFlag(WireHost))
        new HostWiring(m_window.get(), category);
    return m_window.get();
}

NoticeListWidget* NoticeWindowFixture::makeOtherWindow(VyrEngine::NoticeCategory category)
{
    m_other.reset(new NoticeListWidget(category));
    return m_other.get();
}

NoticeListWidget* NoticeWindowFixture::openWindow(int notices)
{
    NoticeListWidget* window = makeWindow(VyrEngine::Activity);
    H::addActivityNotices(window, notices);
    window->popNoticeListWidget(0);
    if (!QTest::qWaitForWindowExposed(window))
        return nullptr;
    H::finish(H::animation(window, "m_popAnimation"));
    return window;
}

WindowSignalRecorder* NoticeWindowFixture::recorder() const
{
    return m_recorder;
}

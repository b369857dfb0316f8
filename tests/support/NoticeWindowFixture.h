#pragma once

#include "GatherNotice.h"

#include <QFlags>
#include <memory>

class NoticeListWidget;
class WindowSignalRecorder;

// The set-up every notice window test shares, held as one member of the test
// class: init() and cleanup() give a clean kit and model, the simulated screen
// and the pointer off every window; the windows it makes are deleted at cleanup.
class NoticeWindowFixture
{
public:
    enum Option {
        NoOption = 0x0,
        RecordSignals = 0x1, // a WindowSignalRecorder on each window made
        WireHost = 0x2,      // a HostWiring for each window made, so the model's signals size and pop it
    };
    Q_DECLARE_FLAGS(Options, Option)

    explicit NoticeWindowFixture(Options options = NoOption);
    ~NoticeWindowFixture();

    // For the test's init(): resets kit and model, puts the simulated screen in place, moves the pointer away.
    void init();
    // For the test's cleanup(): deletes the windows, drops the simulated screen, resets kit and model.
    void cleanup();

    // The test's window, replacing any earlier one.
    NoticeListWidget* makeWindow(VyrEngine::NoticeCategory category = VyrEngine::Activity);
    // A second window beside the test's window, for the other category; no recorder or wiring.
    NoticeListWidget* makeOtherWindow(VyrEngine::NoticeCategory category);
    // An Activity window holding `notices` rows sized by hand (so not with WireHost), popped, its
    // fade-in ended; null when it never shows.
    NoticeListWidget* openWindow(int notices);
    // The recorder on the test's window (RecordSignals only).
    WindowSignalRecorder* recorder() const;

private:
    Options m_options;
    std::unique_ptr<NoticeListWidget> m_window;
    std::unique_ptr<NoticeListWidget> m_other;
    WindowSignalRecorder* m_recorder = nullptr;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(NoticeWindowFixture::Options)

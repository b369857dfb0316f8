#pragma once

#include <QString>

class QWidget;

// A screen for the windows' placement that is not the real one: "1280x800"
// and a taskbar edge name ("left", "top", "right", "bottom"); the taskbar
// takes 40 pixels of that edge. Put in place through the library's internal
// screen override, which only the simulator uses: the host part places its
// windows through exported API alone.
class SimulatedScreen
{
public:
    static bool isValid(const QString& size, const QString& edge);
    // False, with nothing changed, when isValid() is false.
    static bool apply(const QString& size, const QString& edge);
    // As a window manager would on the simulated screen: `window` and its
    // frame at the work area's top left, no larger than the work area. Does
    // nothing when no screen was applied. Call it once the window shows, when
    // its frame is known.
    static void fitWindow(QWidget* window);
};

#pragma once

#include <QString>

// A screen for the windows' placement that is not the real one: "1280x800"
// and a taskbar edge name ("left", "top", "right", "bottom"); the taskbar
// takes 40 pixels of that edge. Put in place through ScreenCorner's override.
class SimulatedScreen
{
public:
    static bool isValid(const QString& size, const QString& edge);
    // False, with nothing changed, when isValid() is false.
    static bool apply(const QString& size, const QString& edge);
};

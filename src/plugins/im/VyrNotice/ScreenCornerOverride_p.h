#pragma once

// Private to the library: a screen put in place of the system's for every
// notice window, for a program that simulates one (the demo's --screen, the
// tests and benchmarks). Process-wide; GUI thread only.

#include "ScreenCorner.h"
#include "VyrNoticeExport.h"

namespace ScreenCornerOverride {

// Makes ScreenCorner::current() return `screen` from now on, for every window.
VYRNOTICE_TESTS_EXPORT void set(const ScreenCorner::Screen& screen);

// Back to the system's taskbar edge and primary screen.
VYRNOTICE_TESTS_EXPORT void clear();

} // namespace ScreenCornerOverride

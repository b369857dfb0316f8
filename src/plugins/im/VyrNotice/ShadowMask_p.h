#pragma once

// Private to the library: frameless windows whose transparent shadow border
// shows as solid black where nothing composites translucent windows (X11
// without a compositing manager).

#include "VyrNoticeExport.h"

#include <QMargins>
#include <functional>

class QWidget;

namespace ShadowMask {

// Whether translucent windows are drawn with their transparency. Asks the
// X server for a compositing manager on the xcb platform; true on every other
// platform (offscreen, Windows, Wayland).
VYRNOTICE_TESTS_EXPORT bool systemComposites();

// Puts `decide` in place of systemComposites() for every window from now on;
// an empty function brings the system's answer back. For tests.
VYRNOTICE_TESTS_EXPORT void setDecision(std::function<bool()> decide);

// Keeps `window` masked to its panel (the window less `shadow`) whenever it
// shows or changes size while nothing composites; with a compositor the
// window keeps no mask and draws its shadow. The panel stays where it is.
VYRNOTICE_TESTS_EXPORT void follow(QWidget* window, const QMargins& shadow);

} // namespace ShadowMask

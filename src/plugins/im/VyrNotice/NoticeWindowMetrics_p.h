#pragma once

// Private to the library: the transparent shadow border around the white
// panel of each kind of notice window, the same on every side. The windows
// draw it; the stacker lines the panels up by it.

namespace NoticeWindowMetrics {

constexpr int GatheredShadow = 20; // a gathered notice window
constexpr int CardShadow = 10;     // a single pop-up card

} // namespace NoticeWindowMetrics

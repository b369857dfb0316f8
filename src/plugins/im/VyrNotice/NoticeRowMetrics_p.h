#pragma once

// Private to the library: sizes of a gathered notice row, shared by the row's
// painter and the window that stacks the rows.

namespace NoticeRowMetrics {

constexpr int Width = 328;
constexpr int Height = 88;

} // namespace NoticeRowMetrics

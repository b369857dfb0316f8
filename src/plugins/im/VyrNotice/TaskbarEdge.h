#pragma once

// The screen edge that the taskbar stands at, numbered as the Windows shell
// numbers it (ABE_LEFT, ABE_TOP, ABE_RIGHT, ABE_BOTTOM). A value outside the
// four can come from the shell and is handled by whoever reads it.
//
// Plain C++ on purpose: the Windows query includes nothing but <windows.h>.
enum class TaskbarEdge : int {
    Left = 0,   ///< the taskbar is at the left edge
    Top = 1,    ///< the taskbar is at the top edge
    Right = 2,  ///< the taskbar is at the right edge
    Bottom = 3, ///< the taskbar is at the bottom edge
};

#pragma once

// Plain C++ on purpose: the Windows query includes nothing but <windows.h>.

/**
 * The screen edge that the taskbar stands at, numbered as the Windows shell
 * numbers it (ABE_LEFT, ABE_TOP, ABE_RIGHT, ABE_BOTTOM). A value outside the
 * four can come from the shell and is handled by whoever reads it.
 */
enum class TaskbarEdge : int {
    /** The taskbar is at the left edge. */
    Left = 0,
    /** The taskbar is at the top edge. */
    Top = 1,
    /** The taskbar is at the right edge. */
    Right = 2,
    /** The taskbar is at the bottom edge. */
    Bottom = 3,
};

#pragma once

// The screen edge that the taskbar stands at, in the shell's numbering:
// 0 left, 1 top, 2 right, 3 bottom.
//
// On Windows the shell is asked; elsewhere the edge is derived from the
// primary screen's geometry against its available geometry (bottom when
// nothing is taken from the screen). Plain C++ on purpose: the Windows
// branch needs nothing but <windows.h>.
int queryTaskbarEdge();

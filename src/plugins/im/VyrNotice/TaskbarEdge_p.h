#pragma once

// Private to the library: the one place that asks the system for the taskbar.

#include "TaskbarEdge.h"

// On Windows the shell is asked; elsewhere the edge is derived from the
// primary screen's geometry against its available geometry (bottom when
// nothing is taken from the screen).
TaskbarEdge queryTaskbarEdge();

#pragma once

// Waits for the windows to stand still: no animation of a visible top-level
// window running (a fade, a slide) and every visible one opaque. The camera
// waits before a picture and the user's hand before grabbing a window, so
// that what they meet doesn't depend on the run's speed.
class WindowSettler
{
public:
    // Runs the event loop until the windows stand still, for at most
    // `timeoutMs`. Returns the milliseconds waited, or -1 if they were still
    // moving at the end.
    static int waitForStillWindows(int timeoutMs = 3000);
    static bool anyWindowMoving();
};

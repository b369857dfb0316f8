#pragma once

class QAbstractItemView;

// Private to the widget kit: the look every list and tree of the client
// shares: no frame, a transparent viewport and a slim vertical scroll bar
// that only shows its handle.
void applyClientViewLook(QAbstractItemView* view);

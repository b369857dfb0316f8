#pragma once

#include "GatherNotice.h"

#include <QObject>

class NoticeListWidget;

// Wires the model's two signals to one window the way a host does: a new
// notice of the window's category sizes it first and then pops it (hidden) or
// slides it (visible); a removal calls adjustListHeight(1).
class HostWiring : public QObject
{
    Q_OBJECT
public:
    HostWiring(NoticeListWidget* window, VyrEngine::NoticeCategory category);

private:
    NoticeListWidget* m_window;
    VyrEngine::NoticeCategory m_category;
};

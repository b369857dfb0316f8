#include "HostPart.h"

#include "NoticeStacker.h"
#include "PopNoticeBaseWidget.h"

HostPart::HostPart(Say say, NoticeStacker* stacker, QObject* parent)
    : QObject(parent)
    , m_say(std::move(say))
    , m_stacker(stacker)
{
}

void HostPart::popCounted(PopNoticeBaseWidget* notice, const QString& closedLine, std::function<void()> onClosed)
{
    ++m_openCount;
    connect(notice, &QObject::destroyed, this, [this, closedLine, onClosed]() {
        --m_openCount;
        m_say(closedLine);
        if (onClosed)
            onClosed();
    });
    m_stacker->addWindow(notice);
    notice->popNotice();
}

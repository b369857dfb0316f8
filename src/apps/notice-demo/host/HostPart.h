#pragma once

#include <QObject>
#include <QString>
#include <functional>

class NoticeStacker;
class PopNoticeBaseWidget;

// What every part of the demo host has: the line it reports on, and the
// stacker that its windows are handed to so that none covers another.
class HostPart : public QObject
{
    Q_OBJECT
public:
    using Say = std::function<void(const QString&)>;

    HostPart(Say say, NoticeStacker* stacker, QObject* parent = nullptr);

    // Pop-ups this part created that are not yet destroyed.
    int openCount() const { return m_openCount; }

protected:
    // Counts `notice` while it lives, says `closedLine` and runs `onClosed`
    // when it goes, hands it to the stacker before it pops (so it takes its
    // place as it shows) and pops it. No pointer is kept: it deletes itself.
    void popCounted(PopNoticeBaseWidget* notice, const QString& closedLine, std::function<void()> onClosed = {});

    Say m_say;
    NoticeStacker* m_stacker;

private:
    int m_openCount = 0;
};

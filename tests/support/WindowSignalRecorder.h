#pragma once

#include "SignalRecorder.h"

class NoticeListWidget;

// Records a notice window's eight signals as short strings, in order:
// "friend", "cluster(7)", "report(9)", "lesson(1)", "activity(42)",
// "enter(1)", "hidden(Lesson,false)", "pause(3)". Lambdas rather than
// QSignalSpy, since NoticeCategory is not a registered meta-type.
class WindowSignalRecorder : public SignalRecorder
{
    Q_OBJECT
public:
    explicit WindowSignalRecorder(NoticeListWidget* window);
};

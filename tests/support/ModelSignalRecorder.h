#pragma once

#include "SignalRecorder.h"

class NoticeListModel;

// Records the notice model's signals and resets as short strings, in order:
// "reset", "popup(Lesson)", "remove(Activity)", "updated".
class ModelSignalRecorder : public SignalRecorder
{
    Q_OBJECT
public:
    explicit ModelSignalRecorder(NoticeListModel* model);
};

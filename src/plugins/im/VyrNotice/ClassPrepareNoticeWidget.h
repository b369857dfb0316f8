#pragma once

#include "LessonEnterPage_p.h"

// The class notice page of a lesson about to start: the course's cover, the
// heading, the lesson's name, and the enter and later buttons.
class VYRNOTICE_TESTS_EXPORT ClassPrepareNoticeWidget : public LessonEnterPage
{
    Q_OBJECT
public:
    explicit ClassPrepareNoticeWidget(QWidget* parent);
};

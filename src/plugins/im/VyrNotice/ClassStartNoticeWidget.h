#pragma once

#include "LessonEnterPage_p.h"

// The class notice page of a lesson that has started: the course's cover
// (the default cluster picture until it arrives), the heading, the lesson's
// name, and the enter and later buttons.
class VYRNOTICE_TESTS_EXPORT ClassStartNoticeWidget : public LessonEnterPage
{
    Q_OBJECT
public:
    explicit ClassStartNoticeWidget(QWidget* parent);
};

#include "ClassPrepareNoticeWidget.h"

// Intended: this page loads the cover after the text and doesn't give it the
// screen's ratio, unlike the other two pages.
ClassPrepareNoticeWidget::ClassPrepareNoticeWidget(QWidget* parent)
    : LessonEnterPage(parent, CoverAfterText, /*coverWithRatio=*/false)
{
}

#include "ClassStartNoticeWidget.h"

#include "AvatarManager.h"
#include "ClusterID.h"
#include "ImageOp.h"

#include <QLabel>

// This page loads the cover first of all, at the screen's ratio.
ClassStartNoticeWidget::ClassStartNoticeWidget(QWidget* parent)
    : LessonEnterPage(parent, CoverFirst, /*coverWithRatio=*/true)
{
    // The default cluster picture stands until the first cover arrives.
    const QPixmap avatar = AvatarManager::instance().getClusterAvatar(VyrEngine::ClusterID(0, 0), false);
    QPixmap picture = ImageOp::roundedRectCoursePixmap(avatar, QSizeF(m_iconLabel->size()),
                                                       m_iconLabel->devicePixelRatioF());
    picture.setDevicePixelRatio(m_iconLabel->devicePixelRatio());
    m_iconLabel->setPixmap(picture);
}

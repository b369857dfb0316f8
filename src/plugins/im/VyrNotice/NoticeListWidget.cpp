#include "NoticeListWidget.h"

#include "GlobalStyle.h"
#include "Movable.h"
#include "NoticeListModel.h"
#include "NameSpan_p.h"
#include "NoticeListViewItem.h"
#include "NoticeLog_p.h"
#include "NoticeRowMetrics_p.h"
#include "NoticeWindowMetrics_p.h"
#include "PushTracking_p.h"
#include "ScreenCorner.h"
#include "ShadowMask_p.h"
#include "VyrListView.h"
#include "VyrPauseableTimer.h"

#include <QAccessible>
#include <QCursor>
#include <QDebug>
#include <QFile>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPropertyAnimation>
#include <QRegularExpression>
#include <QToolButton>
#include <QVBoxLayout>
#include <QtMath>
#include <qdrawutil.h>

const QMargins NoticeListWidget::s_shadowMargins(NoticeWindowMetrics::GatheredShadow, NoticeWindowMetrics::GatheredShadow,
                                                 NoticeWindowMetrics::GatheredShadow, NoticeWindowMetrics::GatheredShadow);

namespace {

constexpr int kRowHeight = NoticeRowMetrics::Height;
constexpr int kHalfRowHeight = NoticeRowMetrics::Height / 2;
// Title panel, gap and list margin as the window counts them. The layout asks
// for 54; the fixed height wins, and that is intended.
constexpr int kChromeHeight = 50;
constexpr int kContentWidth = 384;
constexpr int kTitleHeight = 42;
constexpr int kHoldTimeMs = 15000;
constexpr int kAnimationMs = 500;

VyrEngine::GatherNoticePtr noticeOf(const QModelIndex& index)
{
    return index.data(Qt::UserRole).value<VyrEngine::GatherNoticePtr>();
}

QMap<QString, QVariant> checkUp(bool followed)
{
    QMap<QString, QVariant> data;
    data.insert(QStringLiteral("check_up"), followed);
    return data;
}

} // namespace

NoticeListWidget::NoticeListWidget(VyrEngine::NoticeCategory noticeCategory, QWidget* parent)
    : QWidget(parent, Qt::WindowFlags())
    , m_noticeCategory(noticeCategory)
    , m_shadow(QStringLiteral(":/im/images/notice/GatherNoticeShadow.png"))
{
    // Intended: set here and read nowhere.
    m_unusedValue = 0;
    setAttribute(Qt::WA_TranslucentBackground);
    setFocusPolicy(Qt::NoFocus);
    setWindowFlags(windowFlags() | Qt::WindowStaysOnTopHint | Qt::FramelessWindowHint | Qt::Tool);
    setMouseTracking(true);
    init();
    // Without a compositor the shadow border would show black: only the panel shows then.
    ShadowMask::follow(this, s_shadowMargins);
}

// Everything is a child of the window or of its panels.
NoticeListWidget::~NoticeListWidget() = default;

void NoticeListWidget::init()
{
    initWidget();
    setVisible(false);

    m_closeTimer = new VyrPauseableTimer(this);
    m_closeTimer->setObjectName(QStringLiteral("m_closeTimer"));
    m_closeTimer->setSingleShot(true);
    m_closeTimer->setInterval(kHoldTimeMs);
    connect(m_closeTimer, &VyrPauseableTimer::timeout, this, &NoticeListWidget::onStartOpacityAnimation);

    if (m_noticeCategory == VyrEngine::Lesson) {
        connect(NoticeListModel::instance(), &NoticeListModel::lessonNoticeUpdated, this,
                &NoticeListWidget::onLessonNoticeUpdated);
    }

    // Intended: the result of open() is not looked at; a missing sheet leaves the window unstyled.
    QFile file(QStringLiteral(":/im/qss/notice/NoticeListWidget.qss"));
    file.open(QIODevice::ReadOnly);
    setStyleSheet(QString::fromUtf8(file.readAll()));
    file.close();
}

void NoticeListWidget::initWidget()
{
    auto* mainLayout = new QHBoxLayout(this);
    mainLayout->setContentsMargins(s_shadowMargins);
    mainLayout->setSpacing(0);

    auto* panel = new QWidget(this);
    panel->setObjectName(QStringLiteral("noticeListWidget"));
    panel->setFixedWidth(kContentWidth);
    auto* panelLayout = new QVBoxLayout(panel);
    panelLayout->setContentsMargins(0, 0, 0, 0);
    panelLayout->setSpacing(0);
    panelLayout->addWidget(createTitleWidget(), 0);
    panelLayout->addSpacing(4);
    panelLayout->addWidget(createListWidget(), 0);
    mainLayout->addWidget(panel, 0);

    // The shadow border and the title start a drag; the list does not.
    auto* movable = new Movable(this, Movable::MoveByTopArea);
    movable->setMoveTriggerArea(s_shadowMargins.top() + kTitleHeight);
    connect(movable, &Movable::signalPosChanged, this, [this]() { m_isPosChanged = true; });

    updateTitle();
}

QWidget* NoticeListWidget::createTitleWidget()
{
    m_titleLabel = new QLabel();
    m_titleLabel->setObjectName(QStringLiteral("titleLabel"));

    auto* closeButton = new QToolButton(this);
    GlobalStyle::getInstance()->applyCurrentStyle(closeButton, QStringLiteral("QToolButton_CloseGrayBg"), false);
    closeButton->setToolTip(qtTrId("ID_Close", -1));
    closeButton->setAccessibleName(qtTrId("ID_GatherNotice_CloseAccessibleName", -1));
    closeButton->setFixedSize(18, 18);
    closeButton->setCursor(Qt::PointingHandCursor);
    connect(closeButton, &QToolButton::clicked, this, &NoticeListWidget::onClickedCloseBtn);

    auto* layout = new QHBoxLayout();
    layout->setSpacing(0);
    layout->setContentsMargins(20, 16, 20, 4);
    layout->addWidget(m_titleLabel);
    layout->addStretch(0);
    layout->addWidget(closeButton);

    auto* titleWidget = new QWidget();
    titleWidget->setObjectName(QStringLiteral("titleWidget"));
    titleWidget->setFixedHeight(kTitleHeight);
    titleWidget->setLayout(layout);
    return titleWidget;
}

QWidget* NoticeListWidget::createListWidget()
{
    auto* delegate = new NoticeListViewItem(this);
    delegate->setChinaLocale(NameSpan::isChina(locale()));

    m_sortFilterModel = new NoticeListSortFilterModel(NoticeListModel::instance(), m_noticeCategory, this);

    m_listView = new VyrListView(nullptr);
    m_listView->setObjectName(QStringLiteral("noticeListView"));
    m_listView->setAccessibleName(qtTrId("ID_GatherNotice_ListAccessibleName", -1));
    m_listView->setAttribute(Qt::WA_MacShowFocusRect, false);
    // Intended: customContextMenuRequested goes nowhere, so no menu shows.
    m_listView->setContextMenuPolicy(Qt::CustomContextMenu);
    m_listView->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // Every row has the delegate's one size: the layout after each reset asks
    // it once instead of once per row.
    m_listView->setUniformItemSizes(true);
    m_listView->setModel(m_sortFilterModel);
    m_listView->setItemDelegate(delegate);
    m_listView->setMouseTracking(true);
    m_listView->viewport()->setAttribute(Qt::WA_Hover, true);
    m_listView->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_listView->setAutoScroll(false);
    m_listView->setSelectionMode(QAbstractItemView::NoSelection);
    m_listView->setFocusPolicy(Qt::ClickFocus);

    connect(delegate, &NoticeListViewItem::clickedItem, this, &NoticeListWidget::onClickedItem);
    connect(delegate, &NoticeListViewItem::enterClassRoom, this, &NoticeListWidget::onEnterClassRoom);

    auto* layout = new QVBoxLayout();
    layout->setSpacing(0);
    layout->setContentsMargins(10, 0, 10, 8);
    layout->addWidget(m_listView);

    m_listWidget = new QWidget();
    m_listWidget->setObjectName(QStringLiteral("listWidget"));
    m_listWidget->setLayout(layout);
    return m_listWidget;
}

void NoticeListWidget::updateTitle()
{
    const int rowCount = m_sortFilterModel->rowCount(QModelIndex());
    const QString title = m_noticeCategory == VyrEngine::Activity
                              ? qtTrId("ID_GatherNotice_ActivityNotice", -1).arg(rowCount)
                              : qtTrId("ID_GatherNotice_LessonNotice", -1).arg(rowCount);
    m_titleLabel->setText(title);
    // What a screen reader announces when the window pops.
    setAccessibleName(title);
}

void NoticeListWidget::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event)
    // Stretching the border is most of a repaint: it is drawn again only for a new size or pixel ratio.
    const qreal ratio = devicePixelRatioF();
    if (m_shadowFrame.isNull() || m_shadowFrame.devicePixelRatioF() != ratio
        || m_shadowFrame.size() != (QSizeF(size()) * ratio).toSize()) {
        m_shadowFrame = QPixmap((QSizeF(size()) * ratio).toSize());
        m_shadowFrame.setDevicePixelRatio(ratio);
        m_shadowFrame.fill(Qt::transparent);
        QPainter frame(&m_shadowFrame);
        frame.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        qDrawBorderPixmap(&frame, rect(), s_shadowMargins, m_shadow, m_shadow.rect(), s_shadowMargins,
                          QTileRules(Qt::StretchTile, Qt::StretchTile), QDrawBorderPixmap::DrawingHints());
    }
    QPainter painter(this);
    painter.drawPixmap(0, 0, m_shadowFrame);
    painter.end();
}

void NoticeListWidget::mouseMoveEvent(QMouseEvent* event)
{
    // Intended: the panel's own rectangle (origin 0, 0) against a position in
    // the window's coordinates, compared without mapping.
    if (m_listWidget->rect().contains(event->pos()))
        setCursor(Qt::PointingHandCursor);
    else
        setCursor(Qt::ArrowCursor);
    QWidget::mouseMoveEvent(event);
}

void NoticeListWidget::adjustListHeight(int change)
{
    qCInfo(lcVyrNotice) << "adjust NoticeListWidget Height, noticeCategory:" << m_noticeCategory;
    updateTitle();

    if (change == 0) {
        if (!isVisible())
            m_isPosChanged = false;
        restartHoldTime();
        if (!growForAddedRows())
            return;
    } else if (change == 1) {
        const int rowCount = m_sortFilterModel->rowCount();
        if (double(rowCount) >= m_maxVisibleItems)
            return;
        m_listHeight -= rowCount == qFloor(m_maxVisibleItems) ? kHalfRowHeight : kRowHeight;
        if (m_listHeight < kRowHeight) {
            emit noticeWidgetHidden(m_noticeCategory, m_isPosChanged);
            qCInfo(lcVyrNotice) << "hide NoticeListWidget, noticeCategory:" << m_noticeCategory << m_isPosChanged;
            m_isPosChanged = false;
            setVisible(false);
            m_listHeight = 0;
            m_closeTimer->stop();
            return;
        }
    }

    // Sizing never moves the window: its top left corner stays.
    m_listView->setFixedHeight(m_listHeight);
    setFixedHeight(s_shadowMargins.top() + s_shadowMargins.bottom() + kChromeHeight + m_listHeight);
}

bool NoticeListWidget::growForAddedRows()
{
    const int rowCount = m_sortFilterModel->rowCount();
    const int mostRows = qCeil(m_maxVisibleItems);
    const auto* notices = qobject_cast<const NoticeListModel*>(m_sortFilterModel->sourceModel());
    const int added = notices ? notices->batchAddedCount(m_noticeCategory) : 0;
    if (added <= 1) {
        if (rowCount > mostRows)
            return false;
        m_listHeight += rowCount == mostRows ? kHalfRowHeight : kRowHeight;
        return true;
    }
    // The end of a batch announces its rows at once: grow through every count
    // the single adds would have passed, as they would have grown it.
    bool grown = false;
    for (int count = qMax(1, rowCount - added + 1); count <= qMin(rowCount, mostRows); ++count) {
        m_listHeight += count == mostRows ? kHalfRowHeight : kRowHeight;
        grown = true;
    }
    return grown;
}

QSize NoticeListWidget::getContentWidgetSize()
{
    return QSize(kContentWidth, m_listHeight + kChromeHeight);
}

QSize NoticeListWidget::windowSizeFor(const QSize& contentSize) const
{
    return contentSize.grownBy(s_shadowMargins);
}

void NoticeListWidget::popNoticeListWidget(int bottomOffset)
{
    // An unknown taskbar edge keeps the positions of the last time.
    ScreenCorner::Corner corner;
    if (ScreenCorner::cornerFor(windowSizeFor(getContentWidgetSize()), bottomOffset, &corner)) {
        // Intended: stored and read by nothing; the window does not slide in.
        m_startPos = corner.start;
        m_endPos = corner.end;
    }
    move(m_endPos);
    show();

    QPropertyAnimation* animation =
        restartAnimation(m_popAnimation, "m_popAnimation", "windowOpacity", &NoticeListWidget::onPopAnimationFinished);
    animation->setStartValue(0.0);
    animation->setEndValue(1.0);
    animation->start(QAbstractAnimation::KeepWhenStopped);
    announceNotices();
}

void NoticeListWidget::adjustNoticeListWidgetPos(int bottomOffset)
{
    // A null point when the taskbar's edge is unknown.
    QPoint target;
    ScreenCorner::Corner corner;
    if (ScreenCorner::cornerFor(windowSizeFor(getContentWidgetSize()), bottomOffset, &corner))
        target = corner.end;

    QPropertyAnimation* animation =
        restartAnimation(m_posAnimation, "m_posAnimation", "pos", &NoticeListWidget::onPosAnimationFinished);
    animation->setStartValue(QPoint(x(), y()));
    animation->setEndValue(target);
    animation->start(QAbstractAnimation::KeepWhenStopped);
}

void NoticeListWidget::autoAdjustNoticeListWidgetPos()
{
    // Put off while the pointer is on the window; leaveEvent makes the move.
    if (isCursorOnWidget(this)) {
        m_needAdjustPos = true;
        return;
    }
    adjustNoticeListWidgetPos(0);
}

bool NoticeListWidget::isPosChanged()
{
    return m_isPosChanged;
}

void NoticeListWidget::updatePopupTime(quint64 popupTime)
{
    m_popupTime = popupTime;
}

quint64 NoticeListWidget::popupTime()
{
    return m_popupTime;
}

bool NoticeListWidget::isCursorOnWidget(QWidget* widget)
{
    const QPoint cursor = QCursor::pos();
    const QPoint origin = widget->mapToGlobal(QPoint(0, 0));
    // Intended: all four bounds inclusive, one pixel wider and higher than QRect::contains.
    return cursor.x() >= origin.x() && cursor.x() <= origin.x() + widget->width() && cursor.y() >= origin.y()
           && cursor.y() <= origin.y() + widget->height();
}

void NoticeListWidget::enterEvent(QEvent* event)
{
    m_closeTimer->pause();
    QWidget::enterEvent(event);
}

void NoticeListWidget::leaveEvent(QEvent* event)
{
    if (m_needAdjustPos) {
        m_needAdjustPos = false;
        // Intended: the put-off move always uses offset 0.
        adjustNoticeListWidgetPos(0);
    }
    m_closeTimer->resume();
    QWidget::leaveEvent(event);
}

void NoticeListWidget::onLessonNoticeUpdated()
{
    restartHoldTime();
}

void NoticeListWidget::restartHoldTime()
{
    // Under the pointer the count only forgets what has run; it starts when the pointer leaves.
    if (m_closeTimer->isPaused())
        m_closeTimer->resetElapsedTime();
    else
        m_closeTimer->start();
}

QPropertyAnimation* NoticeListWidget::restartAnimation(QPropertyAnimation*& animation, const char* objectName,
                                                       const QByteArray& property,
                                                       void (NoticeListWidget::*onFinished)())
{
    if (!animation) {
        animation = new QPropertyAnimation(this, property, this);
        animation->setObjectName(QLatin1String(objectName));
        connect(animation, &QAbstractAnimation::finished, this, onFinished);
    } else {
        // stop() emits no finished(): the animation keeps its object and its one connection.
        animation->stop();
    }
    animation->setDuration(kAnimationMs);
    return animation;
}

void NoticeListWidget::onStartOpacityAnimation()
{
    QPropertyAnimation* animation = restartAnimation(m_opacityAnimation, "m_opacityAnimation", "windowOpacity",
                                                     &NoticeListWidget::onOpacityAnimationFinished);
    animation->setStartValue(1.0);
    animation->setEndValue(0.0);
    animation->start(QAbstractAnimation::KeepWhenStopped);
}

void NoticeListWidget::onPopAnimationFinished()
{
    delete m_popAnimation;
    m_popAnimation = nullptr;
}

void NoticeListWidget::onPosAnimationFinished()
{
    delete m_posAnimation;
    m_posAnimation = nullptr;
}

void NoticeListWidget::onOpacityAnimationFinished()
{
    delete m_opacityAnimation;
    m_opacityAnimation = nullptr;
    setVisible(false);
    emit noticeWidgetHidden(m_noticeCategory, m_isPosChanged);
    m_isPosChanged = false;
    m_listHeight = 0;
    // Read or not, the category's notices go; this form of delNotice emits nothing.
    NoticeListModel::instance()->delNotice(m_noticeCategory);
}

void NoticeListWidget::announceNotices()
{
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void NoticeListWidget::onClickedItem(QAbstractItemModel* model, QModelIndex index)
{
    if (!qobject_cast<NoticeListSortFilterModel*>(model))
        return;
    if (!index.isValid()) {
        qCInfo(lcVyrNotice) << "clicked notice item, index is invalid";
        return;
    }
    const VyrEngine::GatherNoticePtr notice = noticeOf(index);
    if (!notice)
        return;
    QMap<QString, QVariant> data = checkUp(true);
    trackClickPushMessage(data);
    emitViewDetails(notice);
    NoticeListModel::instance()->delNotice(notice->noticeId());
}

void NoticeListWidget::emitViewDetails(const VyrEngine::GatherNoticePtr& notice)
{
    switch (int(notice->type())) {
    case VyrEngine::ContactorAdd:
        emit viewFriendRequestDetails();
        return;
    case VyrEngine::ClusterNoticeRemind:
        emit viewClusterNoticeDetails(notice->contentId());
        return;
    case VyrEngine::StudyReport:
        emit viewStudyReportNoticeDetails(notice->lessonId());
        return;
    case VyrEngine::StudyActivity:
        emit viewStudyActivityNoticeDetails(notice->appendixPod(), notice->displayPod());
        return;
    default:
        break;
    }
    if (notice->category() == VyrEngine::Lesson)
        emit viewLessonNoticeDetails(notice->lessonId());
}

void NoticeListWidget::onEnterClassRoom(QAbstractItemModel* model, QModelIndex index)
{
    if (!qobject_cast<NoticeListSortFilterModel*>(model))
        return;
    if (!index.isValid())
        return;
    if (!index.isValid()) {
        // Intended: the test above has already returned, so this line is never printed.
        qCInfo(lcVyrNotice) << "clicked notice item, EnterClassRoom, index is invalid";
        return;
    }
    const VyrEngine::GatherNoticePtr notice = noticeOf(index);
    if (!notice)
        return;
    QMap<QString, QVariant> data = checkUp(true);
    trackClickPushMessage(data);
    emit enterClassRoom(notice->lessonId());
    NoticeListModel::instance()->delNotice(notice->noticeId());
}

void NoticeListWidget::onClickedCloseBtn()
{
    QMap<QString, QVariant> data = checkUp(false);
    trackClickPushMessage(data);
    setVisible(false);
    emit noticeWidgetHidden(m_noticeCategory, m_isPosChanged);
    // Read while the window is hidden but before any notice is deleted.
    for (int row = 0; row < m_sortFilterModel->rowCount(); ++row) {
        const VyrEngine::GatherNoticePtr notice = noticeOf(m_sortFilterModel->index(row, 0));
        if (notice && (notice->type() == VyrEngine::LessonPrepare || notice->type() == VyrEngine::LessonStart))
            emit pauseLessonStartAlert(notice->lessonId());
    }
    m_isPosChanged = false;
    m_listHeight = 0;
    m_closeTimer->stop();
    NoticeListModel::instance()->delNotice(m_noticeCategory);
}

void NoticeListWidget::trackClickPushMessage(QMap<QString, QVariant>& data)
{
    // Takes out the row count, so that every click of a category reports one title.
    static const QRegularExpression count(QStringLiteral("\\([^()]*\\)"));
    QString title = m_titleLabel->text();
    title.replace(count, QString());
    PushTracking::send(PushTracking::PushClick, data, title);
}

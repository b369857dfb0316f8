#include "NoticeListViewItem.h"

#include "AvatarManager.h"
#include "BoundedHtml_p.h"
#include "ClusterID.h"
#include "CoreEngine.h"
#include "ImageOp.h"
#include "LessonNoticeText_p.h"
#include "LocalDays_p.h"
#include "NameSpan_p.h"
#include "NoticeRowMetrics_p.h"
#include "RowPaintCache_p.h"
#include "VyrUtils.h"
#include "VyrUtilsHelper.h"

#include <QAbstractTextDocumentLayout>
#include <QDateTime>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <limits>

namespace {

const QSize kRowSize(NoticeRowMetrics::Width, NoticeRowMetrics::Height);
const qreal kCornerRadius = 8;
const int kSeparatorInset = 8;
const QColor kSeparatorColor(242, 242, 242, 255);
const int kIconSize = 36;
const int kTextLeft = 50;         // from the content's left edge, past the icon
const int kTitleRightGap = 46;    // leaves room for the time
const int kTitleHeight = 20;
const int kTimeTop = 2;
const int kBodyTop = 22;
const int kNameWidth = NameSpan::NameWidth;
const int kElideSlack = 15;
const int kButtonFontPixelSize = 12;
const int kButtonGap = 20;

const char* const kBackgroundColor = "#FFFFFF";
const char* const kHoverColor = "#F5F6F8";
const char* const kTitleColor = "#333333";
const char* const kTimeColor = "#999999";
const char* const kBodyColor = "#666666";
const char* const kButtonColor = "#009265";

void setFontPixelSize(QPainter* painter, int pixelSize)
{
    QFont font = painter->font();
    font.setPixelSize(pixelSize);
    painter->setFont(font);
}

QFont buttonFont()
{
    QFont font;
    font.setPixelSize(kButtonFontPixelSize);
    return font;
}

QString timeText(quint32 time)
{
    return VyrUtils::toString(QDateTime::fromSecsSinceEpoch(qint64(time)), QStringLiteral("hh:mm"));
}

QString studyReportBody(const VyrEngine::GatherNotice& notice, const QFontMetrics& metrics, int bodyWidth)
{
    const bool isLearner = notice.reportRole() == 1;
    const QString kind = isLearner ? qtTrId("ID_StudyReportNotice_LearningReport", -1)
                                   : qtTrId("ID_StudyReportNotice_TeachingReport", -1);
    const QString message = isLearner ? qtTrId("ID_StudyReportNotice_GoodJobInLesson", -1)
                                      : qtTrId("ID_StudyReportNotice_TeachingReportOK", -1);
    QString name = metrics.elidedText(notice.lessonName(), Qt::ElideRight, kNameWidth);
    // The message keeps its own %1 for the name.
    const QString line = metrics.elidedText(QStringLiteral("[%1] %2").arg(kind, message), Qt::ElideRight,
                                            2 * bodyWidth - metrics.horizontalAdvance(name) - kElideSlack);
    // Reports use this span whatever the locale (intended).
    const QString span = NameSpan::padded(VyrUtils::escapeHtmlTag(name, false));
    // A cut that took the placeholder away drops the name; spare arg() its warning.
    return line.contains(QLatin1String("%1")) ? line.arg(span) : line;
}

QString studyActivityBody(const StudyActivityNoticeWidgetDisplayPod& texts)
{
    // The host's texts are markup already: not escaped here, and only bounded where they are laid out.
    return QStringLiteral("[%1] %2").arg(texts.windowTitleText, texts.contentText);
}

} // namespace

// Everything a row's picture shows, read from the record at each paint.
struct NoticeListViewItem::RowInputs
{
    int type = 0;
    quint64 clusterId = 0;
    qint64 avatarKey = 0;
    QString title;
    quint32 time = 0;
    QString lessonName;
    quint32 lessonStartTime = 0;
    qint64 lessonMinutesLeft = 0;
    int reportRole = 0;
    QString displayContent;
    const StudyActivityNoticeWidgetDisplayPod* activityTexts = nullptr;
    QString activityTitle;
    QString activityContent;
    QString wording;   // the translated texts the row uses
    bool isHighlighted = false;
    bool isChinaLocale = true;
    int zoneChanges = 0;   // times are shown in local time
    QFont applicationFont;

    bool operator==(const RowInputs& o) const
    {
        return type == o.type && zoneChanges == o.zoneChanges && clusterId == o.clusterId
            && avatarKey == o.avatarKey && time == o.time
            && lessonStartTime == o.lessonStartTime && lessonMinutesLeft == o.lessonMinutesLeft
            && reportRole == o.reportRole && activityTexts == o.activityTexts && isHighlighted == o.isHighlighted
            && isChinaLocale == o.isChinaLocale && title == o.title && lessonName == o.lessonName
            && displayContent == o.displayContent && activityTitle == o.activityTitle
            && activityContent == o.activityContent && wording == o.wording && applicationFont == o.applicationFont;
    }
};

NoticeListViewItem::NoticeListViewItem(QObject* parent)
    : QStyledItemDelegate(parent)
    , m_rowPictures(std::make_unique<RowPaintCache<RowInputs>>())
{
    m_textDocument.setDocumentMargin(0);
    QTextOption option(Qt::AlignLeft);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTextDirection(Qt::LeftToRight);
    m_textDocument.setDefaultTextOption(option);
    QFont font = m_textDocument.defaultFont();
    font.setPixelSize(14);
    m_textDocument.setDefaultFont(font);
    m_textCursor = QTextCursor(&m_textDocument);
}

NoticeListViewItem::~NoticeListViewItem() = default;

void NoticeListViewItem::setChinaLocale(bool isChinaLocale)
{
    m_isChinaLocale = isChinaLocale;
}

int NoticeListViewItem::keptRowPictureCount() const
{
    return m_rowPictures->count();
}

int NoticeListViewItem::rowPicturesMade() const
{
    return m_rowPictures->picturesMade();
}

int NoticeListViewItem::keptRowPictureKilobytes() const
{
    return m_rowPictures->kilobytes();
}

int NoticeListViewItem::maxRowPictureKilobytes() const
{
    return m_rowPictures->maxKilobytes();
}

QSize NoticeListViewItem::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    Q_UNUSED(option)
    Q_UNUSED(index)
    return kRowSize;
}

QRect NoticeListViewItem::contentRect(const QRect& rowRect)
{
    return rowRect.adjusted(10, 12, -10, -12);
}

QRect NoticeListViewItem::bodyRect(const QRect& rowRect)
{
    return contentRect(rowRect).adjusted(kTextLeft, kBodyTop, 0, 0);
}

QSize NoticeListViewItem::enterButtonSize(int textWidth)
{
    // A longer translation gets a wider button, then a second line.
    if (textWidth < 68)
        return QSize(68, 24);
    if (textWidth < 96)
        return QSize(96, 24);
    return QSize(96, 48);
}

QRect NoticeListViewItem::enterButtonRect(const QRect& rowRect)
{
    const int textWidth = QFontMetrics(buttonFont()).horizontalAdvance(qtTrId("ID_Enter_Classroom", -1));
    const QSize size = enterButtonSize(textWidth);
    // Top right of the body: the row less 60 on the left, 34 on top and 10 on the right.
    const QRect area = rowRect.adjusted(60, 34, -10, 0);
    return QRect(QPoint(area.right() - size.width() + 1, area.top()), size);
}

bool NoticeListViewItem::hasEnterButton(const VyrEngine::GatherNotice& notice)
{
    return notice.type() == VyrEngine::LessonPrepare || notice.type() == VyrEngine::LessonStart;
}

void NoticeListViewItem::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    painter->save();
    paintBackground(painter, option);
    paintSeparator(painter, option, index);
    const auto notice = index.data(Qt::UserRole).value<VyrEngine::GatherNoticePtr>();
    if (notice) {
        const QRect& row = option.rect;
        m_rowPictures->paint(painter, quint64(quintptr(notice.get())), pictureArea(row), rowInputs(*notice, option),
                             [&](QPainter* target) {
                                 // A picture starts blank: its background is painted first.
                                 if (target != painter)
                                     paintBackground(target, option);
                                 paintContent(target, row, *notice);
                             });
    }
    painter->restore();
}

QRect NoticeListViewItem::pictureArea(const QRect& rowRect)
{
    // Clear of the rounded corners and of the separator, so the background covers it whole.
    const int corner = int(kCornerRadius);
    return rowRect.adjusted(corner, 1, -corner, -1);
}

NoticeListViewItem::RowInputs NoticeListViewItem::rowInputs(const VyrEngine::GatherNotice& notice,
                                                            const QStyleOptionViewItem& option) const
{
    RowInputs in;
    in.type = int(notice.type());
    in.clusterId = notice.clusterId();
    // The friend request's picture is the library's own and never changes.
    if (notice.type() != VyrEngine::ContactorAdd)
        in.avatarKey =
            AvatarManager::instance().getClusterAvatar(VyrEngine::ClusterID(notice.clusterId(), 0), false).cacheKey();
    in.title = notice.title();
    in.time = notice.time();
    // Looks at the zone at most once a second; a change paints every row again.
    in.zoneChanges = LocalDays::forThisThread().zoneChanges();
    in.isHighlighted = option.state & (QStyle::State_Selected | QStyle::State_MouseOver);
    in.isChinaLocale = m_isChinaLocale;
    in.applicationFont = QGuiApplication::font();
    switch (notice.type()) {
    case VyrEngine::ContactorAdd:
        in.wording = qtTrId("ID_AddFriend_Request", -1) + QLatin1Char('\n') + qtTrId("ID_GatherNotice_FriendRequest", -1);
        break;
    case VyrEngine::ClusterNoticeRemind:
        in.displayContent = notice.displayContent();
        break;
    case VyrEngine::StudyReport:
        in.lessonName = notice.lessonName();
        in.reportRole = notice.reportRole();
        in.wording = in.reportRole == 1 ? qtTrId("ID_StudyReportNotice_LearningReport", -1)
                + qtTrId("ID_StudyReportNotice_GoodJobInLesson", -1)
                                        : qtTrId("ID_StudyReportNotice_TeachingReport", -1)
                + qtTrId("ID_StudyReportNotice_TeachingReportOK", -1);
        break;
    case VyrEngine::StudyActivity:
        if (const auto texts = notice.displayPod()) {
            in.activityTexts = texts.data();
            in.activityTitle = texts->windowTitleText;
            in.activityContent = texts->contentText;
        }
        break;
    case VyrEngine::LessonAhead: {
        in.lessonName = notice.lessonName();
        in.lessonStartTime = notice.lessonStartTime();
        // The minutes shown change with the clock; past the hour the start's date shows. Read
        // without formatting that date, which would read the time zone at every paint.
        const qint64 secondsLeft = qint64(notice.lessonStartTime()) - VyrEngine::CoreEngine::instance()->currentTime();
        const bool countsMinutes = secondsLeft <= LessonNoticeText::MinutesThreshold;
        in.lessonMinutesLeft = countsMinutes ? secondsLeft / 60 : std::numeric_limits<qint64>::min();
        in.wording = countsMinutes ? qtTrId("ID_LMSClassAheadNotice_LessonWillStartAfter", -1)
                                   : qtTrId("ID_ClassAheadNotice_LessonWillStartAfterOneHour", -1);
        break;
    }
    case VyrEngine::LessonPrepare:
    case VyrEngine::LessonStart:
        in.lessonName = notice.lessonName();
        in.wording = qtTrId("ID_LMS_ClassStartNotice_LessonStart", -1) + QLatin1Char('\n')
            + qtTrId("ID_Enter_Classroom", -1);
        break;
    }
    return in;
}

void NoticeListViewItem::paintContent(QPainter* painter, const QRect& rowRect,
                                      const VyrEngine::GatherNotice& notice) const
{
    paintAvatar(painter, rowRect, notice);
    paintText(painter, rowRect, notice);
}

void NoticeListViewItem::paintBackground(QPainter* painter, const QStyleOptionViewItem& option)
{
    QPainterPath path;
    path.addRoundedRect(QRectF(option.rect), kCornerRadius, kCornerRadius);
    const bool isHighlighted = option.state & (QStyle::State_Selected | QStyle::State_MouseOver);
    painter->fillPath(path, QColor(isHighlighted ? kHoverColor : kBackgroundColor));
}

void NoticeListViewItem::paintSeparator(QPainter* painter, const QStyleOptionViewItem& option,
                                        const QModelIndex& index)
{
    painter->setPen(kSeparatorColor);
    // The first row has nothing above it.
    if (index.row() == 0)
        return;
    const QRect& r = option.rect;
    painter->drawLine(QPoint(r.left() + kSeparatorInset, r.top()), QPoint(r.right() - kSeparatorInset, r.top()));
}

void NoticeListViewItem::paintAvatar(QPainter* painter, const QRect& rowRect, const VyrEngine::GatherNotice& notice)
{
    const QRect iconRect(contentRect(rowRect).topLeft(), QSize(kIconSize, kIconSize));
    const QPixmap picture = notice.type() == VyrEngine::ContactorAdd
        ? QPixmap(QStringLiteral(":/common/images/common/FriendAdd.png"))
        : AvatarManager::instance().getClusterAvatar(VyrEngine::ClusterID(notice.clusterId(), 0), false);
    const qreal ratio = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
    const QPixmap rounded = ImageOp::roundedRectCoursePixmap(picture, QSizeF(kIconSize, kIconSize), ratio);
    painter->setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter->drawPixmap(iconRect, rounded);
}

void NoticeListViewItem::paintText(QPainter* painter, const QRect& rowRect, const VyrEngine::GatherNotice& notice) const
{
    const QRect content = contentRect(rowRect);
    QRect titleRect = content.adjusted(kTextLeft, 0, -kTitleRightGap, 0);
    titleRect.setHeight(kTitleHeight);
    const QRect timeRect = content.adjusted(0, kTimeTop, 0, 0);
    QRect body = bodyRect(rowRect);

    setFontPixelSize(painter, 15);
    painter->setPen(QColor(kTitleColor));
    const QString title =
        notice.type() == VyrEngine::ContactorAdd ? qtTrId("ID_AddFriend_Request", -1) : notice.title();
    painter->drawText(titleRect, Qt::AlignLeft | Qt::AlignTop,
                      VyrUtilsHelper::limitString(painter->fontMetrics(), title, titleRect.width(), Qt::ElideRight)
                          .simplified());

    setFontPixelSize(painter, 12);
    painter->setPen(QColor(kTimeColor));
    painter->drawText(timeRect, Qt::AlignRight | Qt::AlignTop, timeText(notice.time()));

    setFontPixelSize(painter, 14);
    // An activity's body is laid out from its texts once, not built at each paint.
    const bool isActivity = notice.type() == VyrEngine::StudyActivity;
    const BodyText text = isActivity ? BodyText() : bodyText(notice, painter->fontMetrics(), body.width());
    if (hasEnterButton(notice)) {
        const QRect button = enterButtonRect(rowRect);
        paintEnterButton(painter, button);
        body.setRight(body.right() - (button.width() + kButtonGap));
    }

    painter->save();
    if (isActivity)
        paintActivityBody(painter, body, notice);
    else if (text.isRichText)
        paintRichBody(painter, body, text.text);
    else
        paintPlainBody(painter, body, text.text);
    painter->restore();
}

NoticeListViewItem::BodyText NoticeListViewItem::bodyText(const VyrEngine::GatherNotice& notice,
                                                          const QFontMetrics& bodyMetrics, int bodyWidth) const
{
    const qint64 now = VyrEngine::CoreEngine::instance()->currentTime();
    switch (notice.type()) {
    case VyrEngine::ContactorAdd:
        return {bodyMetrics.elidedText(qtTrId("ID_GatherNotice_FriendRequest", -1), Qt::ElideRight,
                                       2 * bodyWidth - kElideSlack),
                false};
    case VyrEngine::ClusterNoticeRemind:
        // Already fitted into its lines at intake; plain, so tags show as typed.
        return {notice.displayContent(), false};
    case VyrEngine::StudyReport:
        return {studyReportBody(notice, bodyMetrics, bodyWidth), true};
    case VyrEngine::StudyActivity:
        return {notice.displayPod() ? studyActivityBody(*notice.displayPod()) : QString(), true};
    case VyrEngine::LessonAhead:
    case VyrEngine::LessonPrepare:
    case VyrEngine::LessonStart:
        return {LessonNoticeText::body(notice.type() == VyrEngine::LessonAhead,
                                       lessonNameSpan(notice.lessonName(), bodyMetrics), notice.lessonStartTime(),
                                       now),
                true};
    }
    return {QString(), true};
}

QString NoticeListViewItem::lessonNameSpan(const QString& lessonName, const QFontMetrics& bodyMetrics) const
{
    return NameSpan::quoted(NameSpan::elidedEscaped(lessonName, bodyMetrics, kNameWidth), m_isChinaLocale);
}

void NoticeListViewItem::paintEnterButton(QPainter* painter, const QRect& buttonRect)
{
    painter->setBrush(QColor(kButtonColor));
    painter->setPen(Qt::NoPen);
    painter->drawRoundedRect(buttonRect, 5, 5);

    painter->setPen(Qt::white);
    painter->setFont(buttonFont());
    QTextOption option(Qt::AlignCenter);
    option.setWrapMode(QTextOption::WrapAnywhere);
    painter->drawText(QRectF(buttonRect), qtTrId("ID_Enter_Classroom", -1), option);
}

void NoticeListViewItem::paintPlainBody(QPainter* painter, const QRect& body, const QString& text)
{
    painter->setPen(QColor(kBodyColor));
    QTextOption option(Qt::AlignLeft | Qt::AlignTop);
    option.setTextDirection(Qt::LeftToRight);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    painter->drawText(QRectF(body), text, option);
}

void NoticeListViewItem::paintRichBody(QPainter* painter, const QRect& body, const QString& html) const
{
    m_textDocument.clear();
    m_textDocument.setPageSize(body.size());
    m_textCursor.beginEditBlock();
    m_textCursor.insertHtml(html);
    m_textCursor.endEditBlock();
    drawDocument(painter, body, m_textDocument);
}

void NoticeListViewItem::paintActivityBody(QPainter* painter, const QRect& body,
                                           const VyrEngine::GatherNotice& notice) const
{
    const auto texts = notice.displayPod();
    if (!texts) {
        paintRichBody(painter, body, QString());
        return;
    }
    drawDocument(painter, body, activityDocument(texts, body.size()));
}

const QTextDocument* NoticeListViewItem::keptActivityDocument(
    const QSharedPointer<StudyActivityNoticeWidgetDisplayPod>& texts, const QSize& bodySize) const
{
    for (const ActivityLayout& layout : m_activityLayouts) {
        if (isLayoutOf(layout, texts, bodySize))
            return layout.document.get();
    }
    return nullptr;
}

bool NoticeListViewItem::isLayoutOf(const ActivityLayout& layout,
                                    const QSharedPointer<StudyActivityNoticeWidgetDisplayPod>& texts, const QSize& size)
{
    // Shared strings compare at once; a changed text or width needs a new layout.
    return layout.record == texts && layout.size == size && layout.windowTitleText == texts->windowTitleText
        && layout.contentText == texts->contentText;
}

QTextDocument& NoticeListViewItem::activityDocument(const QSharedPointer<StudyActivityNoticeWidgetDisplayPod>& texts,
                                                    const QSize& size) const
{
    // Layouts of records that are gone are dropped first.
    m_activityLayouts.erase(std::remove_if(m_activityLayouts.begin(), m_activityLayouts.end(),
                                           [](const ActivityLayout& layout) { return layout.record.isNull(); }),
                            m_activityLayouts.end());
    const auto found = std::find_if(m_activityLayouts.begin(), m_activityLayouts.end(),
                                    [&](const ActivityLayout& layout) { return isLayoutOf(layout, texts, size); });
    if (found != m_activityLayouts.end()) {
        std::rotate(found, found + 1, m_activityLayouts.end());
        return *m_activityLayouts.back().document;
    }
    if (int(m_activityLayouts.size()) >= ActivityLayoutsKept)
        m_activityLayouts.erase(m_activityLayouts.begin());

    // Set up as the shared document is; the host's markup is bounded and loads nothing.
    auto document = std::make_unique<BoundedHtml::Document>();
    document->setDocumentMargin(m_textDocument.documentMargin());
    document->setDefaultTextOption(m_textDocument.defaultTextOption());
    document->setDefaultFont(m_textDocument.defaultFont());
    document->setPageSize(size);
    QTextCursor cursor(document.get());
    cursor.beginEditBlock();
    document->insertBoundedHtml(cursor, studyActivityBody(*texts));
    cursor.endEditBlock();
    // Laid out here, once; every repaint draws this layout.
    document->documentLayout()->documentSize();
    ++m_activityLayoutCount;
    QTextDocument& laidOut = *document;
    m_activityLayouts.push_back({texts, texts->windowTitleText, texts->contentText, size, std::move(document)});
    return laidOut;
}

void NoticeListViewItem::drawDocument(QPainter* painter, const QRect& body, QTextDocument& document)
{
    painter->translate(body.topLeft());
    QAbstractTextDocumentLayout::PaintContext context;
    context.palette.setColor(QPalette::Text, QColor(kBodyColor));
    const QRect clip(0, 0, body.width(), body.height());
    painter->setClipRect(clip, Qt::ReplaceClip);
    context.clip = clip;
    document.documentLayout()->draw(painter, context);
}

bool NoticeListViewItem::editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                                     const QModelIndex& index)
{
    const bool result = QStyledItemDelegate::editorEvent(event, model, option, index);
    if (!event || event->type() != QEvent::MouseButtonRelease)
        return result;
    const auto* mouseEvent = static_cast<QMouseEvent*>(event);
    if (mouseEvent->button() != Qt::LeftButton || !option.rect.contains(mouseEvent->pos()))
        return result;

    const auto notice = index.data(Qt::UserRole).value<VyrEngine::GatherNoticePtr>();
    if (!notice)
        return result;
    // Acts on the release alone: a press on another row is not remembered.
    if (hasEnterButton(*notice) && enterButtonRect(option.rect).contains(mouseEvent->pos()))
        emit enterClassRoom(model, index);
    else
        emit clickedItem(model, index);
    return result;
}

#pragma once

#include "VyrNoticeExport.h"
#include "GatherNotice.h"

#include <QStyledItemDelegate>
#include <QTextCursor>
#include <QTextDocument>

#include <memory>
#include <vector>

class QFontMetrics;
template <typename Inputs>
class RowPaintCache;

// Paints one row of a gathered-notice window: avatar, title, time, body and,
// for lessons about to start or started, the enter-classroom button. Rows
// hold no widgets: the button is a painted rectangle that a click is tested
// against anew. The body text is built at each paint, so a lesson's minutes
// are current whenever the row repaints.
class VYRNOTICE_TESTS_EXPORT NoticeListViewItem : public QStyledItemDelegate
{
    Q_OBJECT
public:
    // What a row's body draws.
    struct BodyText
    {
        QString text;
        bool isRichText = true;
    };

    explicit NoticeListViewItem(QObject* parent);
    ~NoticeListViewItem() override;

    void setChinaLocale(bool isChinaLocale);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;

    // The body of `notice` for a body rectangle `bodyWidth` wide, measured with `bodyMetrics`.
    BodyText bodyText(const VyrEngine::GatherNotice& notice, const QFontMetrics& bodyMetrics, int bodyWidth) const;

    // Row geometry, in the coordinates of `rowRect`; painting and the click test share it.
    static QRect contentRect(const QRect& rowRect);
    static QRect bodyRect(const QRect& rowRect);
    static QSize enterButtonSize(int textWidth);
    static QRect enterButtonRect(const QRect& rowRect);
    static bool hasEnterButton(const VyrEngine::GatherNotice& notice);

    // Study activity bodies are laid out once per text and body size and
    // reused on every repaint; this counts the layouts made.
    int activityLayoutCount() const { return m_activityLayoutCount; }
    // The kept layout of these texts at this body size; null when there is none.
    const QTextDocument* keptActivityDocument(const QSharedPointer<StudyActivityNoticeWidgetDisplayPod>& texts,
                                              const QSize& bodySize) const;
    // Rows whose layouts are kept at most.
    static constexpr int ActivityLayoutsKept = 8;
    int keptActivityLayoutCount() const { return int(m_activityLayouts.size()); }

    // Row pictures kept now, and painted since the delegate was made.
    int keptRowPictureCount() const;
    int rowPicturesMade() const;
    // What the kept row pictures weigh now, and the most they may, in kilobytes.
    int keptRowPictureKilobytes() const;
    int maxRowPictureKilobytes() const;

signals:
    void clickedItem(QAbstractItemModel* model, QModelIndex index);
    void enterClassRoom(QAbstractItemModel* model, QModelIndex index);

private:
    static void paintBackground(QPainter* painter, const QStyleOptionViewItem& option);
    static void paintSeparator(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index);
    struct RowInputs;
    RowInputs rowInputs(const VyrEngine::GatherNotice& notice, const QStyleOptionViewItem& option) const;
    static QRect pictureArea(const QRect& rowRect);
    void paintContent(QPainter* painter, const QRect& rowRect, const VyrEngine::GatherNotice& notice) const;
    static void paintAvatar(QPainter* painter, const QRect& rowRect, const VyrEngine::GatherNotice& notice);
    void paintText(QPainter* painter, const QRect& rowRect, const VyrEngine::GatherNotice& notice) const;
    static void paintEnterButton(QPainter* painter, const QRect& buttonRect);
    static void paintPlainBody(QPainter* painter, const QRect& body, const QString& text);
    void paintRichBody(QPainter* painter, const QRect& body, const QString& html) const;
    void paintActivityBody(QPainter* painter, const QRect& body, const VyrEngine::GatherNotice& notice) const;
    static void drawDocument(QPainter* painter, const QRect& body, QTextDocument& document);
    QTextDocument& activityDocument(const QSharedPointer<StudyActivityNoticeWidgetDisplayPod>& texts,
                                    const QSize& size) const;

    QString lessonNameSpan(const QString& lessonName, const QFontMetrics& bodyMetrics) const;

    bool m_isChinaLocale = true;
    // Reused for every rich row; paint() is const but lays text out here.
    mutable QTextDocument m_textDocument;
    mutable QTextCursor m_textCursor;

    // A study activity's body as laid out for one record's texts and body size.
    // It goes with its record, so that it keeps no text alive.
    struct ActivityLayout
    {
        QWeakPointer<StudyActivityNoticeWidgetDisplayPod> record;
        QString windowTitleText;
        QString contentText;
        QSize size;
        std::unique_ptr<QTextDocument> document;
    };
    static bool isLayoutOf(const ActivityLayout& layout, const QSharedPointer<StudyActivityNoticeWidgetDisplayPod>& texts,
                           const QSize& size);
    // The most recently used last.
    mutable std::vector<ActivityLayout> m_activityLayouts;
    mutable int m_activityLayoutCount = 0;

    // Each recently painted row's picture, by record.
    std::unique_ptr<RowPaintCache<RowInputs>> m_rowPictures;
};

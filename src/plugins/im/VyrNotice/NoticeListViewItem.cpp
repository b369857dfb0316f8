#include "NoticeListViewItem.h"

#include "GatherNotice.h"

#include <QPainter>

NoticeListViewItem::NoticeListViewItem(QObject* parent)
    : QStyledItemDelegate(parent)
{
}

void NoticeListViewItem::setChinaLocale(bool isChinaLocale)
{
    m_isChinaLocale = isChinaLocale;
}

void NoticeListViewItem::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    // Plain rows: a white card with the notice's title.
    painter->save();
    painter->fillRect(option.rect, Qt::white);
    const auto notice = index.data(Qt::UserRole).value<VyrEngine::GatherNoticePtr>();
    if (notice) {
        painter->setPen(QColor(0x33, 0x33, 0x33));
        painter->drawText(option.rect.adjusted(60, 12, -10, -12), Qt::AlignLeft | Qt::AlignTop, notice->title());
    }
    painter->restore();
}

QSize NoticeListViewItem::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    Q_UNUSED(option)
    Q_UNUSED(index)
    return QSize(328, 88);
}

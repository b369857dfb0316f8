#pragma once

#include <QAbstractItemModel>
#include <QModelIndex>
#include <QStyledItemDelegate>

// Draws one row of the gathered-notice list and turns clicks into signals.
class NoticeListViewItem : public QStyledItemDelegate
{
    Q_OBJECT
public:
    explicit NoticeListViewItem(QObject* parent = nullptr);

    void setChinaLocale(bool isChinaLocale);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

signals:
    void clickedItem(QAbstractItemModel* model, QModelIndex index);
    void enterClassRoom(QAbstractItemModel* model, QModelIndex index);

private:
    bool m_isChinaLocale = true;
};

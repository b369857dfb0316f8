#pragma once

// The baselines that every benchmark measures beside the library, so that each
// figure has "the same work" done by stock Qt in the same run:
//  - BaselineView: QStandardItemModel + QSortFilterProxyModel (sorted by a time
//    role, newest first) + a shown QListView or QTreeView with the same rows
//    at the same row height, painted by a plain QStyledItemDelegate;
//  - paintPlainRow(): that delegate painting one row of text into an image;
//  - PlainCard: a plain QWidget of a pop-up's size with the same labels and
//    buttons in the same layout, no style sheet, no animation.

#include <QAbstractItemView>
#include <QBoxLayout>
#include <QCoreApplication>
#include <QImage>
#include <QLabel>
#include <QListView>
#include <QPainter>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QStyledItemDelegate>
#include <QTreeView>

#include <memory>

namespace VyrBench {

constexpr int kTimeRole = Qt::UserRole + 1;

// One row of a baseline: its display text and the time it is sorted by.
struct BaselineRow
{
    QString text;
    qint64 time = 0;
};

class BaselineView
{
public:
    enum Kind { List, Tree };

    // A shown view of `size` holding `rows`, each `rowHeight` high.
    BaselineView(Kind kind, const QVector<BaselineRow>& rows, QSize size, int rowHeight)
        : m_kind(kind)
        , m_size(size)
        , m_rowHeight(rowHeight)
    {
        m_proxy.setSortRole(kTimeRole);
        m_proxy.setSourceModel(&m_model);
        setRows(rows);
        m_proxy.sort(0, Qt::DescendingOrder);
        m_view = makeShownView();
    }

    // Another view of the same kind and size on the same rows, shown and laid out.
    std::unique_ptr<QAbstractItemView> makeShownView()
    {
        std::unique_ptr<QAbstractItemView> view;
        if (m_kind == List)
            view.reset(new QListView());
        else
            view.reset(new QTreeView());
        view->setWindowFlags(Qt::FramelessWindowHint | Qt::Tool | Qt::WindowStaysOnTopHint);
        view->setModel(&m_proxy);
        view->setItemDelegate(&m_delegate);
        view->setFixedSize(m_size);
        view->show();
        QCoreApplication::processEvents();
        return view;
    }

    void setRows(const QVector<BaselineRow>& rows)
    {
        m_model.clear();
        for (const BaselineRow& row : rows)
            appendRow(row);
    }

    void appendRow(const BaselineRow& row)
    {
        auto* item = new QStandardItem(row.text);
        item->setData(row.time, kTimeRole);
        item->setSizeHint(QSize(m_size.width(), m_rowHeight));
        item->setEditable(false);
        m_model.appendRow(item);
    }

    // A group row of `headerHeight` holding `children` (a tree's day group);
    // it sorts by its newest child. A QTreeView shows it expanded.
    void appendGroup(const QString& title, const QVector<BaselineRow>& children, int headerHeight)
    {
        auto* group = new QStandardItem(title);
        group->setSizeHint(QSize(m_size.width(), headerHeight));
        group->setEditable(false);
        qint64 newest = 0;
        for (const BaselineRow& row : children) {
            auto* item = new QStandardItem(row.text);
            item->setData(row.time, kTimeRole);
            item->setSizeHint(QSize(m_size.width(), m_rowHeight));
            item->setEditable(false);
            group->appendRow(item);
            newest = qMax(newest, row.time);
        }
        group->setData(newest, kTimeRole);
        m_model.appendRow(group);
        if (auto* tree = qobject_cast<QTreeView*>(m_view.get()))
            tree->expand(m_proxy.mapFromSource(group->index()));
    }

    // The whole view painted, as the backing store would get it.
    void repaint(QImage* canvas) { m_view->render(canvas); }

    QAbstractItemView* view() const { return m_view.get(); }
    QStandardItemModel* model() { return &m_model; }
    QSortFilterProxyModel* proxy() { return &m_proxy; }

private:
    Kind m_kind;
    QSize m_size;
    int m_rowHeight;
    QStandardItemModel m_model;
    QSortFilterProxyModel m_proxy;
    QStyledItemDelegate m_delegate;
    std::unique_ptr<QAbstractItemView> m_view;
};

// `count` rows of the texts given in turn, one second apart, newest last.
inline QVector<BaselineRow> baselineRows(int count, const QStringList& texts)
{
    QVector<BaselineRow> rows;
    rows.reserve(count);
    for (int i = 0; i < count; ++i)
        rows.append({texts.at(i % texts.size()), 1800000000 + i});
    return rows;
}

// QStyledItemDelegate painting one plain row of `text` filling `canvas`.
inline void paintPlainRow(QImage* canvas, const QString& text)
{
    static QStandardItemModel model(1, 1);
    static QStyledItemDelegate delegate;
    static QListView view;
    model.setData(model.index(0, 0), text);
    QStyleOptionViewItem option;
    option.initFrom(&view);
    option.rect = canvas->rect();
    option.state |= QStyle::State_Enabled;
    QPainter painter(canvas);
    delegate.paint(&painter, option, model.index(0, 0));
}

// A pop-up's texts: a title row with a close button, a picture beside a
// heading and a text, and a row of buttons.
struct CardTexts
{
    QString title;
    QString heading;
    QString text;
    QStringList buttons;
    QSize picture = QSize(36, 36);
};

// The same labels and buttons in a plain QWidget of `size` with a 10-pixel margin.
class PlainCard : public QWidget
{
public:
    PlainCard(QSize size, const CardTexts& texts)
        : QWidget(nullptr, Qt::FramelessWindowHint | Qt::Tool | Qt::WindowStaysOnTopHint)
    {
        setFixedSize(size);
        auto* outer = new QVBoxLayout(this);
        outer->setContentsMargins(10, 10, 10, 10);
        auto* title = new QHBoxLayout();
        title->addWidget(new QLabel(texts.title));
        title->addStretch();
        title->addWidget(new QPushButton(QStringLiteral("x")));
        outer->addLayout(title);
        auto* top = new QHBoxLayout();
        auto* picture = new QLabel();
        picture->setFixedSize(texts.picture);
        top->addWidget(picture);
        auto* column = new QVBoxLayout();
        column->addWidget(new QLabel(texts.heading));
        auto* text = new QLabel(texts.text);
        text->setWordWrap(true);
        column->addWidget(text);
        top->addLayout(column);
        outer->addLayout(top);
        auto* buttons = new QHBoxLayout();
        buttons->addStretch();
        for (const QString& button : texts.buttons)
            buttons->addWidget(new QPushButton(button));
        outer->addLayout(buttons);
    }
};

} // namespace VyrBench

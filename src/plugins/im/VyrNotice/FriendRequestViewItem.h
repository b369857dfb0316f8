#pragma once

#include "VyrNoticeExport.h"

#include <QHash>
#include <QModelIndex>
#include <QPixmap>
#include <QPoint>
#include <QSet>
#include <QStyledItemDelegate>

#include <memory>

class QPushButton;
template <typename Inputs>
class RowPaintCache;

// Paints the rows of the friend-request page and turns mouse events on them
// into signals. A top-level row is a day header (28 pixels high), a child row
// one person (58 pixels): avatar, name, a line of text and, by the request's
// status, the Agree and Refuse buttons or one disabled label button. A row
// whose date is 0 takes no space and paints nothing. A person the contacts
// engine doesn't know gets a row of background only, logged once at info level.
//
// A row's picture is kept and repainted from while nothing it shows (texts,
// avatar, status, the buttons' hover look, size, font, pixel ratio) has
// changed; all of that is read again at each paint.
//
// The rows hold no widgets. Three push buttons, never shown, serve only as
// the source of the buttons' style; every row's buttons are drawn through
// their QStyle. Hover and pressed looks follow the last mouse event seen on a
// row awaiting the user's answer, so the view needs mouse tracking on and must
// pass mouse events (and only those) to editorEvent().
//
// Signals, all on a mouse button release:
//   avatarClickSignal        left button in the left 312 pixels of any row,
//                            day headers included
//   rightClickSignal         right button anywhere on any row; `pos` is the
//                            event's position in the view's viewport
//   agreeButtonClickSignal   any button on Agree (so a right release there
//                            also opens the row's menu)
//   refuseButtonClickSignal  any button on Refuse
//   avatarDoubleClickSignal  declared for hosts that connect it; never emitted
class VYRNOTICE_EXPORT FriendRequestViewItem : public QStyledItemDelegate
{
    Q_OBJECT
public:
    explicit FriendRequestViewItem(QObject* parent = nullptr);
    ~FriendRequestViewItem() override;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;

signals:
    void avatarClickSignal(QModelIndex index);
    void rightClickSignal(QModelIndex index, QPoint pos);
    void agreeButtonClickSignal(QModelIndex index);
    void refuseButtonClickSignal(QModelIndex index);
    void avatarDoubleClickSignal(QModelIndex index);

private:
    friend class FriendRequestViewItemProbe; // the tests' window on the hover state and the kept pictures

    struct RowInputs;
    bool leafInputs(const QStyleOptionViewItem& option, const QModelIndex& index, RowInputs& inputs) const;
    static quint64 rowKey(const QModelIndex& index);
    static QString headerText(const QModelIndex& index);
    int buttonLook(const QRect& button) const;
    int keptRowPictureCount() const;
    int rowPicturesMade() const;
    int rowPictureKilobytes() const;
    int maxRowPictureKilobytes() const;

    void drawZoom(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const;
    void drawLeaf(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const;
    void drawStatus(QPainter* painter, int status, const QModelIndex& index, const QRect& textRect,
                    const QRect& firstButton, const QRect& secondButton) const;
    void drawButton(QPushButton* button, QPainter* painter, const QRect& rect, const QString& text,
                    bool enabled) const;

    QPixmap roundAvatar(quint64 uid, const QSize& size, qreal ratio) const;
    void noteUnknownPerson(quint64 uid) const;
    static QRect rowRect(const QStyleOptionViewItem& option);
    static QRect innerRect(const QRect& row);
    static QRect firstButtonRect(const QRect& inner);
    static QRect secondButtonRect(const QRect& firstButton);

    QPoint m_mousePos;
    QPushButton* m_agreeButton = nullptr;
    QPushButton* m_refuseButton = nullptr;
    QPushButton* m_stateButton = nullptr;
    int m_mouseState = -1;

    // The round cut of each person's picture, made again when the picture or the ratio changes.
    struct RoundAvatar
    {
        qint64 sourceKey = 0;
        qreal ratio = 0;
        QPixmap pixmap;
    };
    mutable QHash<quint64, RoundAvatar> m_roundAvatars;
    // The unknown people already logged, so a repaint doesn't log them again.
    mutable QSet<quint64> m_unknownPeopleLogged;
    // Each recently painted row's picture.
    std::unique_ptr<RowPaintCache<RowInputs>> m_rowPictures;
};

#include "FriendRequestTreeRecorder.h"

#include "FriendRequestModel.h"

#include <QDateTime>
#include <QStringList>

using namespace FriendRequest;

FriendRequestTreeRecorder::FriendRequestTreeRecorder(FriendRequestModel* model)
{
    auto range = [](const QModelIndex& parent, int first, int last) {
        QString text = indexText(parent) + QLatin1Char(':') + QString::number(first);
        if (last != first)
            text += QLatin1Char('-') + QString::number(last);
        return text;
    };
    connect(model, &QAbstractItemModel::rowsInserted, this,
            [this, range](const QModelIndex& p, int f, int l) { record(QStringLiteral("ins(%1)").arg(range(p, f, l))); });
    connect(model, &QAbstractItemModel::rowsRemoved, this,
            [this, range](const QModelIndex& p, int f, int l) { record(QStringLiteral("rem(%1)").arg(range(p, f, l))); });
    connect(model, &QAbstractItemModel::dataChanged, this, [this](const QModelIndex& tl, const QModelIndex& br) {
        QString text = indexText(tl);
        if (br != tl)
            text += QLatin1Char(',') + indexText(br);
        record(QStringLiteral("data(%1)").arg(text));
    });
    connect(model, &FriendRequestModel::expandAllSignal, this, [this]() { record(QStringLiteral("expand")); });
    connect(model, &FriendRequestModel::friendRequestChangeSignal, this,
            [this]() { record(QStringLiteral("change")); });
    connect(model, &FriendRequestModel::needUpdate, this,
            [this](const QModelIndex& index) { record(QStringLiteral("need(%1)").arg(indexText(index))); });
}

QString FriendRequestTreeRecorder::indexText(const QModelIndex& index)
{
    if (!index.isValid())
        return QStringLiteral("-");
    if (!index.parent().isValid())
        return QString::number(index.row());
    return indexText(index.parent()) + QLatin1Char('/') + QString::number(index.row());
}

namespace FriendRequestTree {

namespace {
QString dayText(const QModelIndex& index)
{
    const qint64 secs = static_cast<qint64>(index.data(DateRole).toULongLong());
    return QDateTime::fromSecsSinceEpoch(secs).date().toString(Qt::ISODate);
}
} // namespace

QString text(const QAbstractItemModel* model)
{
    QStringList groups;
    for (int g = 0; g < model->rowCount(); ++g) {
        const QModelIndex group = model->index(g, 0);
        QStringList people;
        for (int r = 0; r < model->rowCount(group); ++r)
            people << QStringLiteral("p%1").arg(model->index(r, 0, group).data(DisplayIdRole).toULongLong());
        groups << dayText(group) + QLatin1Char('[') + people.join(QLatin1Char(' ')) + QLatin1Char(']');
    }
    return QLatin1Char('[') + groups.join(QLatin1Char(' ')) + QLatin1Char(']');
}

QString rows(const QAbstractItemModel* model)
{
    QStringList out;
    for (int g = 0; g < model->rowCount(); ++g) {
        const QModelIndex group = model->index(g, 0);
        for (int r = 0; r < model->rowCount(group); ++r) {
            const QModelIndex row = model->index(r, 0, group);
            out << QStringLiteral("p%1:%2:%3:%4:%5>%6")
                       .arg(row.data(DisplayIdRole).toULongLong())
                       .arg(row.data(StatusRole).toInt())
                       .arg(row.data(MessageRole).toString())
                       .arg(row.data(SequenceIdRole).toInt())
                       .arg(row.data(SourceIdRole).toULongLong())
                       .arg(row.data(TargetIdRole).toULongLong());
        }
    }
    return out.join(QLatin1Char(' '));
}

} // namespace FriendRequestTree

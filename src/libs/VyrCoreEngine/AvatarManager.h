#pragma once

#include "ClusterID.h"

#include <QColor>
#include <QHash>
#include <QObject>
#include <QPixmap>

// The client's avatar store: the pictures of clusters (class groups).
//
// A cluster without a downloaded picture gets a generated one: a square in a
// colour derived from the cluster's id, with the initials of the name the
// host gave, or a group glyph when there is none. Generated pictures are
// made once per cluster and kept.
//
// Host side:
//   putClusterAvatar(clusterId, pixmap)    the cluster's downloaded picture
//   removeClusterAvatar(clusterId)         back to the generated picture
//   setClusterAvatarName(clusterId, name)  the name whose initials the generated picture shows
//   clear()                                forget all pictures and names
//   signal clusterAvatarChanged(id)        emitted by each of the first three
class AvatarManager : public QObject
{
    Q_OBJECT
public:
    // Side of the pictures this store makes, in pixels.
    static constexpr int GeneratedSize = 72;

    static AvatarManager& instance();

    // The downloaded picture, else the generated one. `gray`: the picture in
    // shades of grey, as shown for a cluster the user has left.
    QPixmap getClusterAvatar(const VyrEngine::ClusterID& clusterId, bool gray);

    // The background colour of the generated picture of `clusterId`.
    static QColor generatedColor(quint64 clusterId);

    // Host side.
    void putClusterAvatar(quint64 clusterId, const QPixmap& pixmap);
    void removeClusterAvatar(quint64 clusterId);
    void setClusterAvatarName(quint64 clusterId, const QString& name);
    void clear();

signals:
    void clusterAvatarChanged(const VyrEngine::ClusterID& clusterId);

private:
    explicit AvatarManager(QObject* parent = nullptr);
    QPixmap generatedAvatar(quint64 clusterId);
    static QPixmap toGray(const QPixmap& pixmap);

    static AvatarManager* m_pInstance;
    QHash<quint64, QPixmap> m_downloaded;
    QHash<quint64, QString> m_names;
    QHash<quint64, QPixmap> m_generated;
};

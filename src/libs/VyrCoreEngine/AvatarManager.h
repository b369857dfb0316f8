#pragma once

#include "ClusterID.h"

#include <QColor>
#include <QHash>
#include <QObject>
#include <QPixmap>

/**
 * The client's avatar store: the pictures of clusters (class groups) and of
 * people.
 *
 * A cluster without a downloaded picture gets a generated one: a square in a
 * colour derived from the cluster's id, with the initials of the name the
 * host gave, or a group glyph when there is none. Generated pictures are
 * made once per cluster and kept.
 *
 * Host side:
 *   putClusterAvatar(clusterId, pixmap)    the cluster's downloaded picture
 *   removeClusterAvatar(clusterId)         back to the generated picture
 *   setClusterAvatarName(clusterId, name)  the name whose initials the generated picture shows
 *   clear()                                forget all pictures and names
 *   signal clusterAvatarChanged(id)        emitted by each of the first three
 *
 * A person without a downloaded picture likewise gets a generated one: a
 * square in a colour derived from the uid with the initials of the name the
 * host gave, or a head-and-shoulders glyph when there is none.
 *
 * Host side (people):
 *   putUserAvatar(uid, pixmap)             the person's downloaded picture
 *   removeUserAvatar(uid)                  back to the generated picture
 *   setUserAvatarName(uid, name)           the name whose initials the generated picture shows
 *   userAvatarLookupCount()                getUserAvatar calls so far
 *   signal userAvatarChanged(uid)          emitted by each of these three setters
 */
class AvatarManager : public QObject
{
    Q_OBJECT
public:
    /** Side of the pictures this store makes, in pixels. */
    static constexpr int GeneratedSize = 72;

    static AvatarManager& instance();

    /**
     * The downloaded picture, else the generated one. @p gray: the picture in
     * shades of grey, as shown for a cluster the user has left.
     */
    QPixmap getClusterAvatar(const VyrEngine::ClusterID& clusterId, bool gray);

    /** The background colour of the generated picture of @p clusterId. */
    static QColor generatedColor(quint64 clusterId);

    /** The person's downloaded picture, else the generated one. */
    QPixmap getUserAvatar(quint64 uid);
    /** The background colour of the generated picture of person @p uid. */
    static QColor generatedUserColor(quint64 uid);

    // Host side.
    void putClusterAvatar(quint64 clusterId, const QPixmap& pixmap);
    void removeClusterAvatar(quint64 clusterId);
    void setClusterAvatarName(quint64 clusterId, const QString& name);
    void clear();
    void putUserAvatar(quint64 uid, const QPixmap& pixmap);
    void removeUserAvatar(quint64 uid);
    void setUserAvatarName(quint64 uid, const QString& name);
    int userAvatarLookupCount() const;

signals:
    void clusterAvatarChanged(const VyrEngine::ClusterID& clusterId);
    void userAvatarChanged(quint64 uid);

private:
    explicit AvatarManager(QObject* parent = nullptr);
    QPixmap generatedAvatar(quint64 clusterId);
    static QPixmap toGray(const QPixmap& pixmap);

    static AvatarManager* m_pInstance;
    QHash<quint64, QPixmap> m_downloaded;
    QHash<quint64, QString> m_names;
    QHash<quint64, QPixmap> m_generated;

    QPixmap generatedUserAvatar(quint64 uid);
    QHash<quint64, QPixmap> m_userDownloaded;
    QHash<quint64, QString> m_userNames;
    QHash<quint64, QPixmap> m_userGenerated;
    int m_userLookups = 0;
};

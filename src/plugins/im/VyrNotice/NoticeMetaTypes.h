#pragma once

/**
 * @file
 * Types that travel in QVariants and queued signals of this library, each
 * registered under its own name on first use. Include it where one of these
 * goes into a QVariant or across threads; nothing else needs it.
 *
 * VyrEngine::ClusterID (and a list of them) and VyrEngine::FriendRequestInfo
 * are declared beside their records, in ClusterID.h and FriendRequestInfo.h;
 * VyrEngine::GatherNoticePtr and StudyActivityNoticeWidgetDisplayPod in their
 * own headers. VyrEngine::NoticeCategory has no meta-type.
 */

#include "ClusterID.h"
#include "FriendRequestInfo.h"
#include "GatherNotice.h"
#include "OpaqueCommonPod.h"
#include "RoomType.h"
#include "SnapshotLesson.h"
#include "StudyActivityNoticeWidgetDisplayPod.h"

#include <QMetaType>
#include <QSharedPointer>
#include <vector>

/** The course engine's snapshot of a lesson. */
Q_DECLARE_METATYPE(QSharedPointer<VyrEngine::SnapshotLesson>)
/** A record of the client's that the library only passes on. */
Q_DECLARE_METATYPE(QSharedPointer<OpaqueCommonPod>)
/** The kind of classroom a lesson is held in. */
Q_DECLARE_METATYPE(RoomType)

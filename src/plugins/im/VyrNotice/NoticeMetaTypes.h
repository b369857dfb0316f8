#pragma once

// Types that travel in QVariants and queued signals of this library, each
// registered under its own name on first use.

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

Q_DECLARE_METATYPE(QSharedPointer<VyrEngine::SnapshotLesson>)
Q_DECLARE_METATYPE(QSharedPointer<OpaqueCommonPod>)
Q_DECLARE_METATYPE(RoomType)
Q_DECLARE_METATYPE(VyrEngine::ClusterID)
Q_DECLARE_METATYPE(std::vector<VyrEngine::ClusterID>)
// VyrEngine::FriendRequestInfo is declared beside the record, in FriendRequestInfo.h.

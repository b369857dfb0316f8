#pragma once

#include "FriendRequestInfo.h"
#include "VyrNoticeExport.h"

#include <QObject>
#include <QVector>

// Carries a later page of friend requests from the worker thread that fetched
// it to the model, through a queued connection. One parentless instance lives
// until the process ends.
class VYRNOTICE_TESTS_EXPORT FriendRequestShowMoreSignals : public QObject
{
    Q_OBJECT
public:
    FriendRequestShowMoreSignals();
    ~FriendRequestShowMoreSignals() override;

signals:
    void syncLoadMore(QVector<VyrEngine::FriendRequestInfo> vec);
};

#include "AppendixDataPod.h"

bool AppendixDataPod::isSameActivity(QSharedPointer<AppendixDataPod> other) const
{
    return other && other->activityId == activityId && other->activityType == activityType;
}

#pragma once

#include <QVariantMap>

/** A record of the client's that the notice library only passes on. */
struct OpaqueCommonPod
{
    QVariantMap values;
};

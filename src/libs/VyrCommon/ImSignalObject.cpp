#include "ImSignalObject.h"

#include <QMetaType>

// Declared here only: the notice library declares it in its own metatype header.
Q_DECLARE_METATYPE(RoomType)

ImSignalObject* ImSignalObject::m_pInstance = nullptr;

ImSignalObject::ImSignalObject(QObject* parent)
    : QObject(parent)
{
    // Queued delivery from another thread needs the argument types by name.
    qRegisterMetaType<RoomType>("RoomType");
}

ImSignalObject* ImSignalObject::instance()
{
    if (!m_pInstance)
        m_pInstance = new ImSignalObject();
    return m_pInstance;
}

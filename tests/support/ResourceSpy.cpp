#include "ResourceSpy.h"

#include <QLibraryInfo>
#include <QMutexLocker>
#include <private/qabstractfileengine_p.h>

class ResourceSpy::Handler : public QAbstractFileEngineHandler
{
public:
    QAbstractFileEngine* create(const QString& fileName) const override
    {
        QMutexLocker lock(&m_mutex);
        m_names.append(fileName);
        return nullptr;
    }

    mutable QMutex m_mutex;
    mutable QStringList m_names;
};

ResourceSpy::ResourceSpy()
    : m_handler(new Handler)
{
}

ResourceSpy::~ResourceSpy() = default;

QStringList ResourceSpy::names() const
{
    QMutexLocker lock(&m_handler->m_mutex);
    return m_handler->m_names;
}

QStringList ResourceSpy::outsideNames() const
{
    const QString plugins = QLibraryInfo::location(QLibraryInfo::PluginsPath);
    QStringList outside;
    for (const QString& name : names()) {
        if (name.isEmpty() || name.startsWith(QLatin1Char(':')) || name.startsWith(QLatin1String("qrc:")))
            continue;
        if (!plugins.isEmpty() && name.startsWith(plugins))
            continue;
        outside.append(name);
    }
    return outside;
}

void ResourceSpy::clear()
{
    QMutexLocker lock(&m_handler->m_mutex);
    m_handler->m_names.clear();
}

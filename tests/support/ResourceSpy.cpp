#include "ResourceSpy.h"

#include <QBuffer>
#include <QImage>
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

    QString m_pluginsPath;
    mutable QMutex m_mutex;
    mutable QStringList m_names;
};

ResourceSpy::ResourceSpy()
{
    // Asked before the handler is in place: finding Qt's folders touches the file engines too.
    const QString plugins = QLibraryInfo::location(QLibraryInfo::PluginsPath);
    m_handler.reset(new Handler);
    m_handler->m_pluginsPath = plugins;
}

ResourceSpy::~ResourceSpy() = default;

QStringList ResourceSpy::names() const
{
    QMutexLocker lock(&m_handler->m_mutex);
    return m_handler->m_names;
}

QStringList ResourceSpy::outsideNames() const
{
    const QString& plugins = m_handler->m_pluginsPath;
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

bool ResourceSpy::warmUpImagePlugins()
{
    QImage warm(4, 4, QImage::Format_ARGB32);
    warm.fill(Qt::red);
    QByteArray png;
    QBuffer buffer(&png);
    return warm.save(&buffer, "PNG") && !QImage::fromData(png).isNull();
}

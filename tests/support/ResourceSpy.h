#pragma once

#include <QMutex>
#include <QString>
#include <QStringList>

#include <memory>

// Records every file name that Qt is asked to open, stat or list while the spy
// lives: QFile, QFileInfo, QDir, QImageReader and QTextDocument's resource
// loading all go through Qt's file engines, and the spy sits in front of
// them. It answers nothing itself, so every access still behaves as usual.
//
// outsideNames() leaves out the library's own ":/" and "qrc:" resources and
// Qt's plugin folders (Qt may scan those the first time an image format is
// needed); what remains is a local file or device that something read because
// of its input. Warm Qt up (decode one picture, lay out one document) before
// arming a spy whose list must be empty.
class ResourceSpy
{
public:
    ResourceSpy();
    ~ResourceSpy();
    ResourceSpy(const ResourceSpy&) = delete;
    ResourceSpy& operator=(const ResourceSpy&) = delete;

    // Makes Qt scan its image plugins, as it does once, by writing and reading
    // one picture (a picture merely made loads no plugin); false if either failed.
    static bool warmUpImagePlugins();

    QStringList names() const;
    QStringList outsideNames() const;
    void clear();

private:
    class Handler;
    std::unique_ptr<Handler> m_handler;
};

#pragma once

#include <QList>
#include <QPair>
#include <QString>

class QWidget;

// Grabs windows to PNG files in one folder: each visible window on its own,
// and a picture of the whole screen with every visible window at its place
// (over a plain desktop, the taskbar drawn where the screen's work area ends).
// Files are numbered in the order they are taken.
class ScreenshotTaker
{
public:
    using NamedWindow = QPair<QString, QWidget*>;

    // `folder` empty: nothing is taken. A relative folder is the working directory's.
    explicit ScreenshotTaker(const QString& folder);

    bool isEnabled() const { return !m_folder.isEmpty(); }
    QString folder() const { return m_folder; }
    // Returns the files written.
    QStringList take(const QString& name, const QList<NamedWindow>& windows);

private:
    QString fileName(const QString& name, const QString& what) const;
    QString saveScreen(const QString& name, const QList<NamedWindow>& visible) const;

    QString m_folder;
    int m_count = 0;
};

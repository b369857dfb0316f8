#include "NoticeClickRecorder.h"

#include "VyrTrack.h"

#include <QEvent>

NoticeClickRecorder::NoticeClickRecorder(QWidget* window)
    : m_window(window)
    , m_windowObject(window)
{
    connect(VyrTrack::instance(), &VyrTrack::tracked, this, &NoticeClickRecorder::onTracked);
    window->installEventFilter(this);
}

void NoticeClickRecorder::mark(const QString& name)
{
    record(QStringLiteral("%1(%2)").arg(name, visibleText()));
}

bool NoticeClickRecorder::eventFilter(QObject* watched, QEvent* event)
{
    // Compared as plain objects: the filter also sees events while the window is being destroyed.
    if (event->type() == QEvent::Close && watched == m_windowObject.data())
        record(QStringLiteral("close"));
    return false;
}

void NoticeClickRecorder::onTracked(const QString& event, const QVariantMap& data)
{
    m_lastData = data;
    record(QStringLiteral("%1(%2,%3)")
               .arg(event, data.value(QStringLiteral("check_up")).toBool() ? QStringLiteral("true")
                                                                              : QStringLiteral("false"),
                    visibleText()));
}

QString NoticeClickRecorder::visibleText() const
{
    if (!m_window)
        return QStringLiteral("gone");
    return m_window->isVisible() ? QStringLiteral("yes") : QStringLiteral("no");
}

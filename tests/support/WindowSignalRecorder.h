#pragma once

#include <QObject>
#include <QStringList>

class NoticeListWidget;

// Records a notice window's eight signals as short strings, in order:
// "friend", "cluster(7)", "report(9)", "lesson(1)", "activity(42)",
// "enter(1)", "hidden(Lesson,false)", "pause(3)". Lambdas rather than
// QSignalSpy, since NoticeCategory is not a registered meta-type.
class WindowSignalRecorder : public QObject
{
    Q_OBJECT
public:
    explicit WindowSignalRecorder(NoticeListWidget* window);

    QStringList events() const { return m_events; }
    QString joined() const { return m_events.join(QLatin1Char(' ')); }
    int count(const QString& event) const { return m_events.count(event); }
    void clear() { m_events.clear(); }

private:
    QStringList m_events;
};

#pragma once

#include <QObject>
#include <QStringList>

class NoticeListModel;

// Records the notice model's signals and resets as short strings, in order:
// "reset", "popup(Lesson)", "remove(Activity)", "updated".
class ModelSignalRecorder : public QObject
{
    Q_OBJECT
public:
    explicit ModelSignalRecorder(NoticeListModel* model);

    QStringList events() const { return m_events; }
    QString joined() const { return m_events.join(QLatin1Char(' ')); }
    int count(const QString& event) const { return m_events.count(event); }
    void clear() { m_events.clear(); }

private:
    QStringList m_events;
};

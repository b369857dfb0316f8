#pragma once

#include <QObject>
#include <QStringList>

// Signals recorded as short strings, in order, so a sequence compares as one
// readable line. Subclasses connect the signals they record in their constructor.
class SignalRecorder : public QObject
{
    Q_OBJECT
public:
    explicit SignalRecorder(QObject* parent = nullptr)
        : QObject(parent)
    {
    }

    QStringList events() const { return m_events; }
    QString joined() const { return m_events.join(QLatin1Char(' ')); }
    int count(const QString& event) const { return m_events.count(event); }
    void clear() { m_events.clear(); }

protected:
    void record(const QString& event) { m_events << event; }

private:
    QStringList m_events;
};

#pragma once

#include "SignalRecorder.h"

#include <QPointer>
#include <QVariantMap>
#include <QWidget>

// Records, in order, a pop-up's close, each tracked event and whatever the
// test marks (a signal it connected), each with the window's visibility at
// that moment: "PushClick(true,yes) details(yes) close".
class NoticeClickRecorder : public SignalRecorder
{
    Q_OBJECT
public:
    explicit NoticeClickRecorder(QWidget* window);

    // Records `name(visible)`; connect a window's signal to it through a lambda.
    void mark(const QString& name);
    // The data of the last tracked event.
    QVariantMap lastData() const { return m_lastData; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private slots:
    void onTracked(const QString& event, const QVariantMap& data);

private:
    QString visibleText() const;

    QPointer<QWidget> m_window;
    QPointer<QObject> m_windowObject;
    QVariantMap m_lastData;
};

#pragma once

#include <QObject>

class QAbstractItemModelTester;

// Base of a test class over the gathered notice model. Translations are
// loaded once; before each test the kit and the model are clean, with the
// engine's clock at `now`, and the model is watched by
// QAbstractItemModelTester until the test ends. A derived class declares
// only its own tests.
class NoticeModelTestCase : public QObject
{
    Q_OBJECT
public:
    explicit NoticeModelTestCase(qint64 now, QObject* parent = nullptr);

protected:
    // For a test that releases the model: the tester must not outlive it.
    void detachModelTester();
    // Drops the tester, releases the model and delivers its deletion at once,
    // as the event loop would; true when the model is gone.
    bool releaseModel();

private slots:
    void initTestCase();
    void init();
    void cleanup();

private:
    qint64 m_now;
    QAbstractItemModelTester* m_tester = nullptr;
};

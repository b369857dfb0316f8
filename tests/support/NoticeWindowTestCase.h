#pragma once

#include "NoticeWindowFixture.h"

#include <QObject>

// Base of a test class over the gathered notice window. Translations are
// loaded once, and the fixture's init() and cleanup() run around every
// test; a derived class declares only its own tests and uses `m_fixture`.
class NoticeWindowTestCase : public QObject
{
    Q_OBJECT
public:
    explicit NoticeWindowTestCase(NoticeWindowFixture::Options options, QObject* parent = nullptr);

protected:
    NoticeWindowFixture m_fixture;

private slots:
    void initTestCase();
    void init();
    void cleanup();
};

#include "NoticeWindowTestCase.h"

#include "TestKit.h"

#include <QtTest>

NoticeWindowTestCase::NoticeWindowTestCase(NoticeWindowFixture::Options options, QObject* parent)
    : QObject(parent)
    , m_fixture(options)
{
}

void NoticeWindowTestCase::initTestCase()
{
    QVERIFY(TestKit::loadTranslations());
}

void NoticeWindowTestCase::init()
{
    m_fixture.init();
}

void NoticeWindowTestCase::cleanup()
{
    m_fixture.cleanup();
}

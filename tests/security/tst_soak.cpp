#include "HostWiring.h"
#include "LocalHttpServer.h"
#include "PopupHarness.h"
#include "TestKit.h"

#include "ClassNoticeManager.h"
#include "ClassNoticeWidget.h"
#include "ExamNoticeWidget.h"
#include "FriendRequestNotice.h"
#include "FriendRequestWidget.h"
#include "HomeworkNoticeWidget.h"
#include "MicroCourseNoticeWidget.h"
#include "NotAuthSchoolNotice.h"
#include "NoticeListModel.h"
#include "NoticeListWidget.h"
#include "NoticeRemindNoticeWidget.h"
#include "ScreenCornerOverride_p.h"
#include "StudyActivityNoticeWidget.h"
#include "StudyReportNoticeWidget.h"

#include "ContactsEngine.h"
#include "CoreEngine.h"
#include "CourseEngine.h"
#include "ExamManager.h"
#include "FriendRequestInfo.h"
#include "HomeworkManager.h"
#include "ImSignalObject.h"
#include "NoticeEngine.h"
#include "StudyActivityMessagePushManager.h"
#include "VyrHttpManager.h"
#include "VyrModalAnswerer.h"
#include "VyrPauseableTimer.h"
#include "VyrSettings.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QElapsedTimer>
#include <QJsonObject>
#include <QPointer>
#include <QPropertyAnimation>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QTimer>
#include <QtTest>

#include <functional>

namespace H = PopupHarness;

namespace {

const QByteArray kDetailsPath = "/im/cluster/notice/details";
const quint64 kMe = 1000;

// Texts of the kinds other people and servers send.
const QStringList& hostilePieces()
{
    static const QStringList pieces = {
        QStringLiteral("hello"), QStringLiteral("Fractions and <Decimals>"), QStringLiteral("\n"),
        QStringLiteral("\n\n\n"), QStringLiteral("   "), QStringLiteral("\t"), QStringLiteral("班级通知：明天上午九点考试"),
        QStringLiteral("😀"), QStringLiteral("👨‍👩‍👧‍👦"), QStringLiteral("<b>bold</b>"),
        QStringLiteral("<img src=\"file:///etc/passwd\">"), QStringLiteral("<a href='http://127.0.0.1:1/'>x</a>"),
        QStringLiteral("&amp;&lt;&#0;"), QStringLiteral("%1 %2 %3 %L1 %99"), QStringLiteral("مرحبا"),
        QStringLiteral("\u202e\u200d\u200b"), QString(QChar(0xD800)), QString(QChar(0)), QString()};
    return pieces;
}

QtMessageHandler g_testHandler = nullptr;

// Thousands of operations log tens of thousands of lines; only the soak's own
// lines and critical ones are kept, so its seed and summary stay in sight.
void keepSoakLines(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    const bool own = context.file && QByteArray(context.file).contains("tst_soak");
    if (own || type == QtCriticalMsg || type == QtFatalMsg)
        g_testHandler(type, context, message);
}

} // namespace

// A seeded random run over the library's outside surface for VYR_SOAK_SECONDS
// (3 unless set): every intake of the notice model, every single pop-up with
// hostile texts, closed or timed out, the friend-request page under engine
// events (some from other threads), log-out, and HTTP against a server that
// is slow, answers garbage or 404, never answers or is gone. Nothing here may
// crash or make the sanitizers report; VYR_TEST_SEED repeats a run.
class TestSoak : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase();
    void randomOperationsLeaveNothingBehind();

private:
    QString hostileText(int maxParts = 12);
    quint64 someId() { return quint64(m_random.bounded(1, 9)); }
    void step();

    // Intake of the gathered list.
    void intake();
    void remakeGatheredWindows();
    void actOnGathered();
    // Single pop-ups.
    void popSingle();
    void actOnSingle();
    void engineEvent();
    // The friend-request page and its engine.
    void friendRequestEvent();
    // The server's behaviour.
    void serverMood();

    void clickFriendPage();
    void driveTimers(QWidget* window);
    void clickSomething(QWidget* window);
    void track(QWidget* window);
    void settleBriefly();

    QRandomGenerator m_random;
    QTemporaryDir m_settingsDir;
    VyrDev::LocalHttpServer m_server;
    QList<QPointer<QWidget>> m_singles;
    QModelIndex m_staleIndex;
    QPointer<NoticeListWidget> m_lessonWindow;
    QPointer<NoticeListWidget> m_activityWindow;
    QPointer<FriendRequestWidget> m_friendPage;
    int m_friendSequence = 1;
    QMap<QString, int> m_counts;
};

void TestSoak::initTestCase()
{
    g_testHandler = qInstallMessageHandler(keepSoakLines);
    QVERIFY(TestKit::loadTranslations());
    TestKit::resetAll();
    H::useTestScreen();
    VyrSettings::setFolder(m_settingsDir.path());
    QVERIFY(m_server.start());
    VyrHttpManager::setBaseUrl(m_server.baseUrl());
    VyrHttpManager::setDefaultTimeout(500);
    VyrEngine::CoreEngine::instance()->setFileServerPrefix(m_server.baseUrl().toString());
    VyrEngine::CoreEngine::instance()->setCurrentUid(kMe);
    // A box, menu or dialog that nobody answers is closed.
    VyrModalAnswerer::instance()->setCloseUnanswered(true);
}

void TestSoak::cleanupTestCase()
{
    for (const QPointer<QWidget>& window : qAsConst(m_singles))
        delete window.data();
    delete m_friendPage.data();
    delete m_lessonWindow.data();
    delete m_activityWindow.data();
    H::runDeferredDeletes();
    VyrEngine::NoticeEngine::instance()->waitForThreadEmissions();
    QThreadPool::globalInstance()->waitForDone();
    VyrHttpManager::abortAll();
    m_server.stop();
    TestKit::resetAll();
    H::runDeferredDeletes();
    ScreenCornerOverride::clear();
    qInstallMessageHandler(g_testHandler);
}

// Operations at random until the time is up; afterwards every pop-up closes
// and goes, and the model's rows are those of its two categories.
void TestSoak::randomOperationsLeaveNothingBehind()
{
    const quint32 seed = qEnvironmentVariableIsSet("VYR_TEST_SEED")
        ? quint32(qEnvironmentVariableIntValue("VYR_TEST_SEED"))
        : quint32(QDateTime::currentMSecsSinceEpoch());
    qInfo() << "soak seed:" << seed << "(set VYR_TEST_SEED to repeat)";
    m_random.seed(seed);
    const int seconds = qEnvironmentVariableIsSet("VYR_SOAK_SECONDS") ? qEnvironmentVariableIntValue("VYR_SOAK_SECONDS")
                                                                       : 3;
    remakeGatheredWindows();

    QElapsedTimer clock;
    clock.start();
    int steps = 0;
    while (clock.elapsed() < qint64(seconds) * 1000) {
        step();
        ++steps;
        NoticeListModel* model = NoticeListModel::instance();
        QCOMPARE(model->rowCount(), model->getNoticeItemNum(VyrEngine::NoticeCategory::Lesson)
                                        + model->getNoticeItemNum(VyrEngine::NoticeCategory::Activity));
    }
    qInfo() << "soak:" << steps << "steps in" << clock.elapsed() << "ms, seed" << seed << m_counts;

    // Every single pop-up still open deletes itself once closed; none is left behind. The
    // certification notice is a plain widget that its host deletes.
    for (const QPointer<QWidget>& window : qAsConst(m_singles)) {
        if (qobject_cast<PopNoticeBaseWidget*>(window))
            window->close();
        else
            delete window.data();
    }
    QTRY_VERIFY_WITH_TIMEOUT(std::none_of(m_singles.begin(), m_singles.end(),
                                          [](const QPointer<QWidget>& window) {
                                              if (window)
                                                  H::runDeferredDeletes();
                                              return !window.isNull();
                                          }),
                             10000);
}

QString TestSoak::hostileText(int maxParts)
{
    QString text;
    const int parts = m_random.bounded(0, maxParts + 1);
    for (int i = 0; i < parts; ++i) {
        const int kind = m_random.bounded(0, 12);
        if (kind == 0) {
            text += QString(m_random.bounded(1, 400), QChar(QLatin1Char('a' + m_random.bounded(0, 26))));
        } else if (kind == 1) {
            const int length = m_random.bounded(1, 16);
            for (int c = 0; c < length; ++c)
                text += QChar(ushort(m_random.bounded(0, 0x10000)));
        } else {
            text += hostilePieces().at(m_random.bounded(0, hostilePieces().size()));
        }
    }
    return text;
}

void TestSoak::step()
{
    switch (m_random.bounded(0, 10)) {
    case 0:
    case 1:
    case 2:
        intake();
        break;
    case 3:
    case 4:
        popSingle();
        break;
    case 5:
        actOnSingle();
        break;
    case 6:
        engineEvent();
        break;
    case 7:
        friendRequestEvent();
        break;
    case 8:
        serverMood();
        break;
    default:
        if (m_random.bounded(0, 50) == 0)
            remakeGatheredWindows();
        else
            actOnGathered();
        break;
    }
    settleBriefly();
}

void TestSoak::intake()
{
    NoticeListModel* model = NoticeListModel::instance();
    VyrEngine::CourseEngine* courses = VyrEngine::CourseEngine::instance();
    switch (m_random.bounded(0, 9)) {
    case 0: {
        // A lesson the engine knows, named by somebody, or one it doesn't.
        const quint64 lessonId = someId();
        if (m_random.bounded(0, 3))
            TestKit::putLesson(lessonId, hostileText(), 1800000000 + m_random.bounded(-7200, 7200), 500,
                               m_random.bounded(0, 3));
        model->addLessonNotice(VyrEngine::NoticeType(m_random.bounded(0, 7)), lessonId);
        ++m_counts[QStringLiteral("lesson")];
        break;
    }
    case 1:
        model->addStudyReportNotice(someId());
        ++m_counts[QStringLiteral("report")];
        break;
    case 2: {
        auto pod = QSharedPointer<AppendixDataPod>::create();
        pod->activityId = someId();
        pod->activityType = m_random.bounded(0, 5);
        pod->activityName = hostileText();
        pod->courseData = QSharedPointer<ActivityCourseDataPod>::create();
        pod->courseData->courseName = hostileText();
        auto display = QSharedPointer<StudyActivityNoticeWidgetDisplayPod>::create();
        display->windowTitleText = hostileText(3);
        display->contentText = hostileText();
        display->headingText = hostileText(3);
        display->textA = hostileText(3);
        display->pushBody = hostileText(3);
        model->addStudyActivityNotice(pod, m_random.bounded(0, 8) ? display : nullptr);
        ++m_counts[QStringLiteral("activity")];
        break;
    }
    case 3:
        VyrEngine::ContactsEngine::instance()->putCluster(someId(), hostileText(4));
        model->addClusterNoticeRemindNotice(hostileText(30), someId(), someId(), someId());
        ++m_counts[QStringLiteral("cluster")];
        break;
    case 4:
        model->addContactorAddNotice();
        break;
    case 5:
        // A row's index now, or one kept from before rows went.
        if (m_random.bounded(0, 3) == 0 && m_staleIndex.model() == model)
            model->delNotice(m_staleIndex);
        else
            model->delNotice(model->index(m_random.bounded(0, model->rowCount() + 1), 0));
        if (model->rowCount() > 0)
            m_staleIndex = model->index(model->rowCount() - 1, 0);
        break;
    case 6:
        model->delNotice(m_random.bounded(0, 2) ? hostileText(2) : QUuid::createUuid().toString());
        break;
    case 7:
        model->delNotice(VyrEngine::NoticeCategory(m_random.bounded(0, 2)));
        break;
    default:
        // The engine answers the pending look-ups now, or never.
        if (m_random.bounded(0, 4) == 0)
            courses->cancelPendingFutures();
        else
            courses->finishPendingFutures();
        break;
    }
}

void TestSoak::remakeGatheredWindows()
{
    delete m_lessonWindow.data();
    delete m_activityWindow.data();
    if (m_random.bounded(0, 2)) {
        NoticeListModel::release();
        m_staleIndex = QModelIndex();
    }
    H::runDeferredDeletes();
    m_lessonWindow = new NoticeListWidget(VyrEngine::NoticeCategory::Lesson);
    m_activityWindow = new NoticeListWidget(VyrEngine::NoticeCategory::Activity);
    // The wirings are the windows' children and go with them.
    new HostWiring(m_lessonWindow, VyrEngine::NoticeCategory::Lesson);
    new HostWiring(m_activityWindow, VyrEngine::NoticeCategory::Activity);
    ++m_counts[QStringLiteral("release")];
}

void TestSoak::actOnGathered()
{
    NoticeListWidget* window = m_random.bounded(0, 2) ? m_lessonWindow.data() : m_activityWindow.data();
    if (!window || !window->isVisible())
        return;
    switch (m_random.bounded(0, 3)) {
    case 0:
        // Its hold runs out: the window fades and takes its category's rows along.
        driveTimers(window);
        break;
    case 1: {
        // A press on a row: its details, the classroom, or its close button.
        const QList<QAbstractItemView*> views = window->findChildren<QAbstractItemView*>();
        if (views.isEmpty())
            break;
        QWidget* viewport = views.first()->viewport();
        const QPoint at(m_random.bounded(0, qMax(1, viewport->width())),
                        m_random.bounded(0, qMax(1, viewport->height())));
        QTest::mouseMove(viewport, at);
        QTest::mouseClick(viewport, Qt::LeftButton, Qt::NoModifier, at);
        ++m_counts[QStringLiteral("rowClick")];
        break;
    }
    default:
        clickSomething(window);
        break;
    }
}

void TestSoak::popSingle()
{
    QWidget* window = nullptr;
    PopNoticeBaseWidget* card = nullptr;
    const quint64 id = someId();
    switch (m_random.bounded(0, 10)) {
    case 0: {
        TestKit::putLesson(id, hostileText(), 1800000000 + m_random.bounded(-3600, 3600), 500, 1);
        auto lesson = VyrEngine::CourseEngine::instance()->lessonSnapshot(id);
        if (ClassNoticeManager::instance()->isExistTheNotice(id)) {
            emit ClassNoticeManager::instance()->classTypeAndDataChange(m_random.bounded(0, 3), lesson);
            break;
        }
        auto* notice = new ClassNoticeWidget(ClassNoticeWidget::ClassNoticeType(m_random.bounded(0, 3)),
                                             m_random.bounded(0, 10) ? lesson : nullptr);
        ClassNoticeManager::instance()->addClassNotice(id);
        card = notice;
        break;
    }
    case 1: {
        auto info = std::make_shared<ExamInfo>();
        info->courseId = 500;
        info->examId = id;
        info->name = hostileText();
        info->expireCount = qint32(m_random.generate());
        card = new ExamNoticeWidget(kMe, m_random.bounded(-1, 5), m_random.bounded(0, 10) ? info : nullptr,
                                    m_random.bounded(0, 2));
        break;
    }
    case 2: {
        VyrEngine::ContactsEngine::instance()->putUser(VyrEngine::UserInfo(kMe, hostileText(4)));
        auto info = std::make_shared<HomeworkEntity>();
        info->courseId = 500;
        info->homeworkId = id;
        info->name = hostileText();
        info->revised = m_random.bounded(0, 2);
        info->expireCount = qint32(m_random.generate());
        card = new HomeworkNoticeWidget(kMe, m_random.bounded(-1, 5), m_random.bounded(0, 10) ? info : nullptr,
                                        m_random.bounded(0, 2));
        break;
    }
    case 3: {
        auto pod = QSharedPointer<AppendixDataPod>::create();
        pod->activityId = id;
        pod->activityName = hostileText();
        pod->courseData = QSharedPointer<ActivityCourseDataPod>::create();
        pod->courseData->courseName = hostileText(3);
        auto display = QSharedPointer<StudyActivityNoticeWidgetDisplayPod>::create();
        display->windowTitleText = hostileText(3);
        display->contentText = hostileText();
        display->textB = hostileText(3);
        display->textC = hostileText(3);
        card = new StudyActivityNoticeWidget(pod, display);
        break;
    }
    case 4: {
        QJsonObject info;
        info.insert(QStringLiteral("lectureName"), hostileText());
        info.insert(QStringLiteral("auditStatus"), m_random.bounded(-1, 4));
        static const QStringList covers = {QStringLiteral("/cover.png"), QStringLiteral("/missing.png"),
                                           QStringLiteral("/slow.png"), QStringLiteral("file:///etc/passwd"),
                                           QStringLiteral("../../x.jpg"), QString()};
        info.insert(QStringLiteral("coverUrl"),
                    m_random.bounded(0, 4) ? covers.at(m_random.bounded(0, covers.size())) : hostileText(2));
        card = new MicroCourseNoticeWidget(id, m_random.bounded(0, 3), info);
        break;
    }
    case 5: {
        TestKit::putLesson(id, hostileText(), 1800000000, 500, 1);
        card = new StudyReportNoticeWidget(VyrEngine::CourseEngine::instance()->lessonSnapshot(id));
        break;
    }
    case 6:
        VyrEngine::ContactsEngine::instance()->putCluster(id, hostileText(4));
        VyrEngine::ContactsEngine::instance()->setClusterMemberNickname(id, id + 1, hostileText(4));
        card = new NoticeRemindNoticeWidget(hostileText(30), someId(), id, id + 1);
        break;
    case 7:
        window = new NotAuthSchoolNotice;
        window->show();
        break;
    default:
        card = new FriendRequestNotice;
        break;
    }
    if (card) {
        card->popNotice();
        window = card;
    }
    if (window) {
        // Often the user answers at once: "View now" asks the server.
        if (m_random.bounded(0, 3) == 0)
            clickSomething(window);
        track(window);
        ++m_counts[QString::fromLatin1(window->metaObject()->className())];
    }
}

void TestSoak::actOnSingle()
{
    m_singles.removeAll(QPointer<QWidget>());
    if (m_singles.isEmpty())
        return;
    QWidget* window = m_singles.at(m_random.bounded(0, m_singles.size()));
    switch (m_random.bounded(0, 4)) {
    case 0:
        driveTimers(window);
        break;
    case 1:
        clickSomething(window);
        break;
    case 2:
        window->close();
        break;
    default:
        if (m_random.bounded(0, 20) == 0)
            delete window;
        else
            driveTimers(window);
        break;
    }
}

void TestSoak::engineEvent()
{
    const quint64 id = someId();
    switch (m_random.bounded(0, 10)) {
    case 0:
        ExamManager::instance()->withdrawExam(500, id);
        break;
    case 1:
        HomeworkManager::instance()->withdrawHomework(500, id);
        break;
    case 2: {
        auto pod = QSharedPointer<AppendixDataPod>::create();
        pod->activityId = id;
        if (m_random.bounded(0, 2))
            StudyActivityMessagePushManager::instance().deleteActivityFromThread(pod);
        else
            StudyActivityMessagePushManager::instance().deleteActivity(pod);
        break;
    }
    case 3:
        VyrEngine::ContactsEngine::instance()->deleteClusters({id});
        break;
    case 4:
        VyrEngine::ContactsEngine::instance()->changeUsers({kMe, id});
        break;
    case 5:
        emit VyrEngine::CourseEngine::instance()->signalRemoveLesson(7, 500, id);
        break;
    case 6:
        emit VyrEngine::CourseEngine::instance()->signalLessonEnd(7, 500, id);
        break;
    case 7:
        emit VyrEngine::CourseEngine::instance()->signalLessonInfoChanged(7, 500, id);
        break;
    case 8:
        if (m_random.bounded(0, 10) == 0) {
            emit ImSignalObject::instance()->signalLogOut();
            ++m_counts[QStringLiteral("logout")];
        }
        break;
    default:
        VyrEngine::CoreEngine::instance()->advanceTime(m_random.bounded(-600, 3600));
        break;
    }
}

void TestSoak::friendRequestEvent()
{
    VyrEngine::NoticeEngine* engine = VyrEngine::NoticeEngine::instance();
    if (!m_friendPage || m_random.bounded(0, 60) == 0) {
        delete m_friendPage.data();
        engine->waitForThreadEmissions();
        m_friendPage = new FriendRequestWidget;
        m_friendPage->resize(600, 500);
        m_friendPage->show();
        ++m_counts[QStringLiteral("friendPage")];
        return;
    }
    VyrEngine::FriendRequestInfo info;
    info.setSequenceId(m_random.bounded(0, 3) ? m_friendSequence++ : m_random.bounded(1, m_friendSequence + 1));
    const quint64 peer = someId();
    const bool fromPeer = m_random.bounded(0, 2);
    info.setSourceId(fromPeer ? peer : kMe);
    info.setTargetId(fromPeer ? kMe : peer);
    info.setStatus(m_random.bounded(-1, 6));
    info.setDate(quint64(1800000000 - m_random.bounded(0, 90 * 86400)));
    info.setMessage(hostileText());
    VyrEngine::ContactsEngine::instance()->putUser(VyrEngine::UserInfo(peer, hostileText(4)));
    const auto kind = VyrEngine::NoticeEngine::RecordSignal(m_random.bounded(0, 4));
    switch (m_random.bounded(0, 7)) {
    case 0:
        engine->emitRecordSignal(kind, info);
        break;
    case 1:
        engine->emitRecordSignalFromThread(kind, info);
        break;
    case 2:
        engine->emitDeleteSignalFromThread(quint64(info.sequenceId()));
        break;
    case 3:
        engine->emitDeleteSignal(quint64(info.sequenceId()));
        break;
    case 4:
        engine->putFriendRequest(info);
        engine->setUiDataReady(true);
        break;
    case 5:
        engine->emitErrorNotice(hostileText(3));
        break;
    default:
        clickFriendPage();
        break;
    }
    ++m_counts[QStringLiteral("friendEvent")];
}

void TestSoak::serverMood()
{
    VyrDev::HttpReply reply;
    switch (m_random.bounded(0, 7)) {
    case 0:
        reply = VyrDev::HttpReply::json(R"({"code":0,"data":{"exist":true}})");
        break;
    case 1:
        reply = VyrDev::HttpReply::json(hostileText(6).toUtf8());
        break;
    case 2:
        reply = VyrDev::HttpReply::error(404, "<html>not here</html>");
        break;
    case 3:
        reply = VyrDev::HttpReply::json(R"({"code":0})");
        reply.delayMs = m_random.bounded(50, 800);
        break;
    case 4:
        reply.hang = true;
        break;
    case 5: {
        QByteArray garbage(m_random.bounded(0, 4096), Qt::Uninitialized);
        for (char& byte : garbage)
            byte = char(m_random.bounded(0, 256));
        reply = VyrDev::HttpReply::png(garbage);
        break;
    }
    default:
        // Refused: the address is a port that nobody listens on.
        VyrHttpManager::setBaseUrl(QUrl(QStringLiteral("http://127.0.0.1:1")));
        VyrEngine::CoreEngine::instance()->setFileServerPrefix(QStringLiteral("http://127.0.0.1:1"));
        ++m_counts[QStringLiteral("refused")];
        return;
    }
    VyrHttpManager::setBaseUrl(m_server.baseUrl());
    VyrEngine::CoreEngine::instance()->setFileServerPrefix(m_server.baseUrl().toString());
    m_server.setReply(kDetailsPath, reply);
    m_server.setReply("/cover.png", m_random.bounded(0, 2) ? reply : VyrDev::HttpReply::png(QByteArray(8, 'x')));
    VyrDev::HttpReply slow = reply;
    slow.delayMs = 300;
    m_server.setReply("/slow.png", slow);
    m_server.setDefaultReply(reply);
    ++m_counts[QStringLiteral("server")];
}

void TestSoak::clickFriendPage()
{
    // The answer buttons of a row are painted: press somewhere on the list.
    const QList<QAbstractItemView*> views = m_friendPage->findChildren<QAbstractItemView*>();
    if (views.isEmpty() || m_random.bounded(0, 4) == 0) {
        clickSomething(m_friendPage);
        return;
    }
    QWidget* viewport = views.first()->viewport();
    const QPoint at(m_random.bounded(0, qMax(1, viewport->width())), m_random.bounded(0, qMax(1, viewport->height())));
    QTest::mouseMove(viewport, at);
    QTest::mouseClick(viewport, m_random.bounded(0, 4) ? Qt::LeftButton : Qt::RightButton, Qt::NoModifier, at);
    ++m_counts[QStringLiteral("friendClick")];
}

void TestSoak::driveTimers(QWidget* window)
{
    for (QPropertyAnimation* animation : window->findChildren<QPropertyAnimation*>())
        H::finish(animation);
    for (QTimer* timer : window->findChildren<QTimer*>()) {
        if (timer->isActive())
            timer->start(0);
    }
    for (VyrPauseableTimer* timer : window->findChildren<VyrPauseableTimer*>()) {
        if (timer->isActive())
            timer->expire();
    }
}

void TestSoak::clickSomething(QWidget* window)
{
    QList<QAbstractButton*> buttons;
    for (QAbstractButton* button : window->findChildren<QAbstractButton*>()) {
        if (button->isVisible() && button->isEnabled())
            buttons << button;
    }
    if (buttons.isEmpty())
        return;
    QAbstractButton* button = buttons.at(m_random.bounded(0, buttons.size()));
    ++m_counts[QStringLiteral("click ") + button->objectName()];
    button->click();
}

void TestSoak::track(QWidget* window)
{
    m_singles << window;
    if (m_random.bounded(0, 2))
        driveTimers(window);
}

void TestSoak::settleBriefly()
{
    QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    if (m_random.bounded(0, 20) == 0)
        QTest::qWait(m_random.bounded(1, 30));
    H::runDeferredDeletes();
}

QTEST_MAIN(TestSoak)
#include "tst_soak.moc"

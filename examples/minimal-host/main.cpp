// A minimal host: one gathered window for lessons, one lesson notice.
//
// It feeds the course engine one lesson, asks the notice model for a notice
// of it, and shows the window the way the client does: the height first,
// then the pop. It prints the window's title and exits 0 once the window is
// up, or 1 if the title came out untranslated or the window never showed.
// Pass --stay to watch the window hold for 15 seconds and fade out.

#include <CoreEngine.h>
#include <CourseEngine.h>
#include <NoticeListModel.h>
#include <NoticeListWidget.h>
#include <NoticeTranslator.h>

#include <QApplication>
#include <QTextStream>
#include <QTimer>

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    // Optional: English is there without it. This picks the system's language.
    NoticeTranslator::install(QLocale::system());

    // The client's engines already know the lesson; here the kit is told.
    const qint64 now = QDateTime::currentSecsSinceEpoch();
    VyrEngine::CoreEngine::instance()->setCurrentTime(now);
    VyrEngine::SnapshotLesson lesson;
    lesson.schoolId = 1;
    lesson.courseId = 10;
    lesson.lessonId = 100;
    lesson.startTime = now + 600;
    lesson.role = 1;
    VyrEngine::CourseEngine::instance()->putLesson(lesson, QStringLiteral("Fractions"));
    VyrEngine::CourseEngine::instance()->putCourse(10, QStringLiteral("Mathematics"), 1);

    // One window per category; this host shows lessons only.
    NoticeListWidget window(VyrEngine::Lesson);
    NoticeListModel* model = NoticeListModel::instance();
    QObject::connect(model, &NoticeListModel::popupNoticeListWidget, &window,
                     [&window](VyrEngine::NoticeCategory category) {
                         if (category != VyrEngine::Lesson)
                             return;
                         window.adjustListHeight(0); // the height first: the position is computed from it
                         window.popNoticeListWidget(0);
                     });
    QObject::connect(model, &NoticeListModel::removeNoticeListItem, &window,
                     [&window](VyrEngine::NoticeCategory category) {
                         if (category == VyrEngine::Lesson)
                             window.adjustListHeight(1);
                     });
    QObject::connect(&window, &NoticeListWidget::enterClassRoom, [](qulonglong lessonId) {
        QTextStream(stdout) << "enter classroom of lesson " << lessonId << "\n";
    });
    QObject::connect(&window, &NoticeListWidget::noticeWidgetHidden, &app, &QCoreApplication::quit);

    // Asynchronous: the row comes once the engine has answered.
    model->addLessonNotice(VyrEngine::LessonAhead, lesson.lessonId);

    if (!app.arguments().contains(QStringLiteral("--stay"))) {
        QTimer::singleShot(1000, &app, [&window]() {
            const QString title = window.accessibleName();
            QTextStream(stdout) << "window visible: " << (window.isVisible() ? "yes" : "no") << ", title: " << title
                                << "\n";
            const bool ok = window.isVisible() && !title.isEmpty() && !title.startsWith(QLatin1String("ID_"));
            QCoreApplication::exit(ok ? 0 : 1);
        });
    }
    return app.exec();
}

#pragma once

#include "GatherNotice.h"
#include "KitFixture.h"

#include <QJsonObject>
#include <QString>

class NoticeListModel;
class QAbstractItemModel;
class QAbstractItemModelTester;
class QObject;

// Shared set-up for tests: translations and a clean client kit.
namespace TestKit {

// Installs the library's embedded translations for `locale` ("en" or "zh_CN"), through
// NoticeTranslator as a host would.
bool loadTranslations(const QString& locale = QStringLiteral("en"));

// Releases the notice model (and lets the event loop delete it), forgets
// every lesson, course, cluster, tracking event and classroom model, and
// stops the engine clock at `now`.
void resetAll(qint64 now = 1800000000);

// Puts a lesson into the course engine and returns its snapshot (the kit's own).
using KitFixture::putLesson;

// Puts lesson `lessonId` (named "Lesson <id>", starting two hours after the default clock) and adds
// its notice of `type`, running the event loop until the look-up has added or updated the row.
void addLessonNotice(quint64 lessonId, VyrEngine::NoticeType type);

// The record that `row` of the notice model, or of a proxy over it, holds; null when none.
VyrEngine::GatherNoticePtr noticeAt(const QAbstractItemModel* model, int row);

// Watches the notice model. The model counts its rows for any parent, as the
// client's code has always done; the tester flags that, so it reports in
// Warning mode here instead of failing every test.
QAbstractItemModelTester* attachNoticeModelTester(NoticeListModel* model, QObject* parent);

// The micro-course record a host hands to its pop-up: published (audit
// status 4), named `name`, with its cover at `coverUrl`.
QJsonObject microCourseLecture(const QString& coverUrl, const QString& name);

// Runs the event loop until the course engine's futures and their completions are done (the kit's own).
using KitFixture::settle;

} // namespace TestKit

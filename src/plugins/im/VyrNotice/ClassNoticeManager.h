#pragma once

#include "NoticeMetaTypes.h"
#include "SnapshotLesson.h"
#include "VyrNoticeExport.h"

#include <QList>
#include <QObject>
#include <QSharedPointer>

/**
 * The registry of lessons that have a class notice window open, and the
 * signal hub between the host and those windows. It holds lesson ids only
 * and owns no window.
 *
 * For a lesson, a host first asks isExistTheNotice(). If false, it creates a
 * ClassNoticeWidget, pops it and calls addClassNotice(); if true, it emits
 * classTypeAndDataChange() to turn the open window to another page. The
 * window takes its id out again when it is destroyed.
 */
class VYRNOTICE_EXPORT ClassNoticeManager : public QObject
{
    Q_OBJECT
public:
    /** An empty registry under @p parent; a host uses instance() instead. */
    explicit ClassNoticeManager(QObject* parent = nullptr);
    /**
     * Schedules the deletion of the registry that instance() gives and
     * clears it, whichever registry is destroyed: the next instance() builds
     * a fresh one. The windows stay open.
     */
    ~ClassNoticeManager() override;

    /** The one registry, made on first use. */
    static ClassNoticeManager* instance();

    /** Records a window for @p lessonId; a second call records it twice. */
    void addClassNotice(quint64 lessonId);
    /** Takes out the first record of @p lessonId, if any. */
    void delClassNotice(quint64 lessonId);
    /** Whether a window is recorded for @p lessonId. */
    bool isExistTheNotice(quint64 lessonId);

signals:
    /**
     * Emitted by the host: the open window of @p lesson turns to page
     * @p type (a ClassNoticeWidget::ClassNoticeType) and refreshes.
     */
    void classTypeAndDataChange(int type, QSharedPointer<VyrEngine::SnapshotLesson> lesson);
    /** A prepare or start notice of lesson @p lessonId closed, for whatever reason. */
    void closeStartNoticeWidget(qulonglong lessonId);

private:
    void init();

    QList<quint64> m_noticeIds;
    // Intended: built and destroyed with the registry, never read or written.
    QList<quint64> m_reservedIds;
    static ClassNoticeManager* m_pInstance;
};

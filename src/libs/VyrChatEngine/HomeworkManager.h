#pragma once

#include "HomeworkEntity.h"

#include <QHash>
#include <QObject>
#include <memory>

/**
 * The chat engine's homework: the records it knows and the withdrawal
 * of a homework's notices.
 *
 * Host side:
 *   putHomework(info)                       know a homework (replaces one with the same homeworkId)
 *   homework(homeworkId)                    the record, or null
 *   withdrawHomework(courseId, homeworkId)  forget the homework, then emit
 *                                           homeworkDeleteNoticeSingal(courseId, homeworkId)
 *   clear()                                 forget every homework, emitting nothing
 * The signal's arguments are plain quint64, so it may be emitted from any
 * thread; queued receivers get it on their own.
 */
class HomeworkManager : public QObject
{
    Q_OBJECT
public:
    static HomeworkManager* instance();

    std::shared_ptr<HomeworkEntity> homework(quint64 homeworkId) const;

    // Host side.
    void putHomework(const HomeworkEntity& info);
    void withdrawHomework(quint64 courseId, quint64 homeworkId);
    void clear();

signals:
    /**
     * The notices of homework @p homeworkId (of course @p courseId) are withdrawn.
     * The name's spelling is the client's.
     */
    void homeworkDeleteNoticeSingal(quint64 courseId, quint64 homeworkId);

private:
    explicit HomeworkManager(QObject* parent = nullptr);

    static HomeworkManager* m_pInstance;
    QHash<quint64, std::shared_ptr<HomeworkEntity>> m_homeworks;
};

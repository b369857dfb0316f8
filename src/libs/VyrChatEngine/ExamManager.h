#pragma once

#include "ExamInfo.h"

#include <QHash>
#include <QObject>
#include <memory>

/**
 * The chat engine's tests (exams): the records it knows and the withdrawal
 * of a test's notices.
 *
 * Host side:
 *   putExam(info)                      know a test (replaces one with the same examId)
 *   exam(examId)                       the record, or null
 *   withdrawExam(courseId, examId)     forget the test, then emit examDeleteNoticeSingal(courseId, examId)
 *   clear()                            forget every test, emitting nothing
 * The signal's arguments are plain quint64, so it may be emitted from any
 * thread; queued receivers get it on their own.
 */
class ExamManager : public QObject
{
    Q_OBJECT
public:
    static ExamManager* instance();

    std::shared_ptr<ExamInfo> exam(quint64 examId) const;

    // Host side.
    void putExam(const ExamInfo& info);
    void withdrawExam(quint64 courseId, quint64 examId);
    void clear();

signals:
    /** The notices of test @p examId (of course @p courseId) are withdrawn. The name's spelling is the client's. */
    void examDeleteNoticeSingal(quint64 courseId, quint64 examId);

private:
    explicit ExamManager(QObject* parent = nullptr);

    static ExamManager* m_pInstance;
    QHash<quint64, std::shared_ptr<ExamInfo>> m_exams;
};

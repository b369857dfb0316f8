#include "ExamManager.h"

ExamManager* ExamManager::m_pInstance = nullptr;

ExamManager::ExamManager(QObject* parent)
    : QObject(parent)
{
}

ExamManager* ExamManager::instance()
{
    if (!m_pInstance)
        m_pInstance = new ExamManager();
    return m_pInstance;
}

std::shared_ptr<ExamInfo> ExamManager::exam(quint64 examId) const
{
    return m_exams.value(examId);
}

void ExamManager::putExam(const ExamInfo& info)
{
    m_exams.insert(info.examId, std::make_shared<ExamInfo>(info));
}

void ExamManager::withdrawExam(quint64 courseId, quint64 examId)
{
    m_exams.remove(examId);
    emit examDeleteNoticeSingal(courseId, examId);
}

void ExamManager::clear()
{
    m_exams.clear();
}

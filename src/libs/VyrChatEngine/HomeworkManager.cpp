#include "HomeworkManager.h"

HomeworkManager* HomeworkManager::m_pInstance = nullptr;

HomeworkManager::HomeworkManager(QObject* parent)
    : QObject(parent)
{
}

HomeworkManager* HomeworkManager::instance()
{
    if (!m_pInstance)
        m_pInstance = new HomeworkManager();
    return m_pInstance;
}

std::shared_ptr<HomeworkEntity> HomeworkManager::homework(quint64 homeworkId) const
{
    return m_homeworks.value(homeworkId);
}

void HomeworkManager::putHomework(const HomeworkEntity& info)
{
    m_homeworks.insert(info.homeworkId, std::make_shared<HomeworkEntity>(info));
}

void HomeworkManager::withdrawHomework(quint64 courseId, quint64 homeworkId)
{
    m_homeworks.remove(homeworkId);
    emit homeworkDeleteNoticeSingal(courseId, homeworkId);
}

void HomeworkManager::clear()
{
    m_homeworks.clear();
}

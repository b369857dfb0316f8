#include "Model.h"

QPointer<Model> Model::m_pInstance;

Model::Model(quint64 courseId, quint64 classroomId)
    : m_courseId(courseId)
    , m_classroomId(classroomId)
{
}

QPointer<Model> Model::getInstance()
{
    return m_pInstance;
}

Model* Model::createInstance(quint64 courseId, quint64 classroomId)
{
    dropInstance();
    m_pInstance = new Model(courseId, classroomId);
    return m_pInstance;
}

void Model::dropInstance()
{
    delete m_pInstance.data();
    m_pInstance.clear();
}

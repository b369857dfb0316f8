#pragma once

#include <QObject>
#include <QPointer>

/**
 * The client's classroom model: exists while the user is in a classroom.
 *
 * Host side:
 *   Model::createInstance(courseId, classroomId)   enter a classroom (replaces any model)
 *   Model::dropInstance()                           leave it: getInstance() gives null again
 */
class Model : public QObject
{
    Q_OBJECT
public:
    static QPointer<Model> getInstance();

    quint64 getCourseId() const { return m_courseId; }
    quint64 getClassroomId() const { return m_classroomId; }

    // Host side.
    static Model* createInstance(quint64 courseId, quint64 classroomId);
    static void dropInstance();

private:
    Model(quint64 courseId, quint64 classroomId);

    static QPointer<Model> m_pInstance;
    quint64 m_courseId = 0;
    quint64 m_classroomId = 0;
};

#include "ModelTesterComplaints.h"

#include <QMutex>

namespace {
QMutex s_mutex;
QStringList s_messages;
QtMessageHandler s_previous = nullptr;
} // namespace

ModelTesterComplaints::ModelTesterComplaints()
{
    QMutexLocker lock(&s_mutex);
    s_messages.clear();
    m_previous = qInstallMessageHandler(&ModelTesterComplaints::handler);
    s_previous = m_previous;
}

ModelTesterComplaints::~ModelTesterComplaints()
{
    qInstallMessageHandler(m_previous);
}

void ModelTesterComplaints::handler(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (type == QtWarningMsg && context.category && qstrcmp(context.category, "qt.modeltest") == 0) {
        QMutexLocker lock(&s_mutex);
        s_messages << message;
        return;
    }
    if (s_previous)
        s_previous(type, context, message);
}

QStringList ModelTesterComplaints::messages() const
{
    QMutexLocker lock(&s_mutex);
    return s_messages;
}

QStringList ModelTesterComplaints::unexpected(const QStringList& expected) const
{
    QStringList out;
    for (const QString& message : messages()) {
        bool known = false;
        for (const QString& part : expected)
            known = known || message.contains(part);
        if (!known)
            out << message;
    }
    return out;
}

void ModelTesterComplaints::clear()
{
    QMutexLocker lock(&s_mutex);
    s_messages.clear();
}

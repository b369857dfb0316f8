#pragma once

#include <QStringList>
#include <QtGlobal>

// Collects what a QAbstractItemModelTester in Warning mode complains about
// while this object lives, so a test can assert the complaints it expects and
// fail on any other. Other messages pass on to the handler before it.
class ModelTesterComplaints
{
public:
    ModelTesterComplaints();
    ~ModelTesterComplaints();

    QStringList messages() const;
    // Complaints that contain none of `expected`.
    QStringList unexpected(const QStringList& expected) const;
    void clear();

private:
    static void handler(QtMsgType type, const QMessageLogContext& context, const QString& message);
    QtMessageHandler m_previous = nullptr;
};

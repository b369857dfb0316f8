#pragma once

#include <QObject>
#include <QPointer>

/**
 * Options of one request of VyrHttpManager.
 *
 * `timeoutMs`    how long the whole transfer may take before it is aborted;
 *                0 takes the manager's default (VyrHttpManager::setDefaultTimeout).
 * `context`      the object the callback belongs to. Once it is destroyed the
 *                transfer is aborted and the callback is never called; a null
 *                context at construction means the callback always runs.
 * `logRequest`   one info line when the request goes out.
 * `logResponse`  one info line with the status and body size when it ends.
 *
 * Host side: a plain record.
 */
class CommonPostParamPod
{
public:
    CommonPostParamPod(quint64 timeoutMs, QPointer<QObject> context, bool logRequest, bool logResponse);

    quint64 timeoutMs() const;
    QPointer<QObject> context() const;
    /** Whether a context was given at construction (it may be gone since). */
    bool hasContext() const;
    bool logRequest() const;
    bool logResponse() const;

private:
    quint64 m_timeoutMs = 0;
    QPointer<QObject> m_context;
    bool m_hasContext = false;
    bool m_logRequest = false;
    bool m_logResponse = false;
};

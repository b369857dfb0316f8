#include "CommonPostParamPod.h"

CommonPostParamPod::CommonPostParamPod(quint64 timeoutMs, QPointer<QObject> context, bool logRequest,
                                       bool logResponse)
    : m_timeoutMs(timeoutMs)
    , m_context(context)
    , m_hasContext(!context.isNull())
    , m_logRequest(logRequest)
    , m_logResponse(logResponse)
{
}

quint64 CommonPostParamPod::timeoutMs() const
{
    return m_timeoutMs;
}

QPointer<QObject> CommonPostParamPod::context() const
{
    return m_context;
}

bool CommonPostParamPod::hasContext() const
{
    return m_hasContext;
}

bool CommonPostParamPod::logRequest() const
{
    return m_logRequest;
}

bool CommonPostParamPod::logResponse() const
{
    return m_logResponse;
}

#include "StudyActivityNoticeWidgetDisplayPod.h"

StudyActivityNoticeWidgetDisplayPod::StudyActivityNoticeWidgetDisplayPod() = default;

StudyActivityNoticeWidgetDisplayPod::StudyActivityNoticeWidgetDisplayPod(
    const QString& windowTitleText, const QString& contentText, bool flagA, bool flagB, bool flagC,
    const QString& textA, bool flagD, const QString& textB, const QString& textC, bool flagE, bool flagF, bool flagG,
    bool flagH, const QString& headingText, const QString& pushScenes, const QString& pushBody, bool lastFlag)
    : windowTitleText(windowTitleText)
    , contentText(contentText)
    , flagA(flagA)
    , flagB(flagB)
    , flagC(flagC)
    , textA(textA)
    , flagD(flagD)
    , textB(textB)
    , textC(textC)
    , flagE(flagE)
    , flagF(flagF)
    , flagG(flagG)
    , flagH(flagH)
    , lastFlag(lastFlag)
    , headingText(headingText)
    , pushScenes(pushScenes)
    , pushBody(pushBody)
{
}

StudyActivityNoticeWidgetDisplayPod::StudyActivityNoticeWidgetDisplayPod(
    const StudyActivityNoticeWidgetDisplayPod& other) = default;
StudyActivityNoticeWidgetDisplayPod::StudyActivityNoticeWidgetDisplayPod(
    StudyActivityNoticeWidgetDisplayPod&& other) noexcept = default;
StudyActivityNoticeWidgetDisplayPod& StudyActivityNoticeWidgetDisplayPod::operator=(
    const StudyActivityNoticeWidgetDisplayPod& other) = default;
StudyActivityNoticeWidgetDisplayPod& StudyActivityNoticeWidgetDisplayPod::operator=(
    StudyActivityNoticeWidgetDisplayPod&& other) noexcept = default;
StudyActivityNoticeWidgetDisplayPod::~StudyActivityNoticeWidgetDisplayPod() = default;

StudyActivityNoticeWidgetDisplayPod& StudyActivityNoticeWidgetDisplayPod::setWindowTitleText(const QString& value)
{
    windowTitleText = value;
    return *this;
}

StudyActivityNoticeWidgetDisplayPod& StudyActivityNoticeWidgetDisplayPod::setContentText(const QString& value)
{
    contentText = value;
    return *this;
}

StudyActivityNoticeWidgetDisplayPod& StudyActivityNoticeWidgetDisplayPod::setHeadingText(const QString& value)
{
    headingText = value;
    return *this;
}

StudyActivityNoticeWidgetDisplayPod& StudyActivityNoticeWidgetDisplayPod::setPushScenes(const QString& value)
{
    pushScenes = value;
    return *this;
}

StudyActivityNoticeWidgetDisplayPod& StudyActivityNoticeWidgetDisplayPod::setPushBody(const QString& value)
{
    pushBody = value;
    return *this;
}

StudyActivityNoticeWidgetDisplayPod& StudyActivityNoticeWidgetDisplayPod::setTextA(const QString& value)
{
    textA = value;
    return *this;
}

StudyActivityNoticeWidgetDisplayPod& StudyActivityNoticeWidgetDisplayPod::setTextB(const QString& value)
{
    textB = value;
    return *this;
}

StudyActivityNoticeWidgetDisplayPod& StudyActivityNoticeWidgetDisplayPod::setTextC(const QString& value)
{
    textC = value;
    return *this;
}

StudyActivityNoticeWidgetDisplayPod& StudyActivityNoticeWidgetDisplayPod::setFlagA(bool value)
{
    flagA = value;
    return *this;
}

StudyActivityNoticeWidgetDisplayPod& StudyActivityNoticeWidgetDisplayPod::setFlagB(bool value)
{
    flagB = value;
    return *this;
}

StudyActivityNoticeWidgetDisplayPod& StudyActivityNoticeWidgetDisplayPod::setFlagC(bool value)
{
    flagC = value;
    return *this;
}

StudyActivityNoticeWidgetDisplayPod& StudyActivityNoticeWidgetDisplayPod::setFlagD(bool value)
{
    flagD = value;
    return *this;
}

StudyActivityNoticeWidgetDisplayPod& StudyActivityNoticeWidgetDisplayPod::setFlagE(bool value)
{
    flagE = value;
    return *this;
}

StudyActivityNoticeWidgetDisplayPod& StudyActivityNoticeWidgetDisplayPod::setFlagF(bool value)
{
    flagF = value;
    return *this;
}

StudyActivityNoticeWidgetDisplayPod& StudyActivityNoticeWidgetDisplayPod::setFlagG(bool value)
{
    flagG = value;
    return *this;
}

StudyActivityNoticeWidgetDisplayPod& StudyActivityNoticeWidgetDisplayPod::setFlagH(bool value)
{
    flagH = value;
    return *this;
}

StudyActivityNoticeWidgetDisplayPod& StudyActivityNoticeWidgetDisplayPod::setLastFlag(bool value)
{
    lastFlag = value;
    return *this;
}

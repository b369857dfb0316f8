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

#pragma once

#include "VyrNoticeExport.h"

#include <QMetaType>
#include <QString>

// The host's ready-made texts for a study activity notice. The flags and the
// texts A to C are the host's own: this library carries them back to it.
class VYRNOTICE_EXPORT StudyActivityNoticeWidgetDisplayPod
{
public:
    StudyActivityNoticeWidgetDisplayPod();
    StudyActivityNoticeWidgetDisplayPod(const QString& windowTitleText, const QString& contentText, bool flagA,
                                        bool flagB, bool flagC, const QString& textA, bool flagD, const QString& textB,
                                        const QString& textC, bool flagE, bool flagF, bool flagG, bool flagH,
                                        const QString& headingText, const QString& pushScenes,
                                        const QString& pushBody, bool lastFlag);
    StudyActivityNoticeWidgetDisplayPod(const StudyActivityNoticeWidgetDisplayPod& other);
    StudyActivityNoticeWidgetDisplayPod(StudyActivityNoticeWidgetDisplayPod&& other) noexcept;
    StudyActivityNoticeWidgetDisplayPod& operator=(const StudyActivityNoticeWidgetDisplayPod& other);
    StudyActivityNoticeWidgetDisplayPod& operator=(StudyActivityNoticeWidgetDisplayPod&& other) noexcept;
    ~StudyActivityNoticeWidgetDisplayPod();

    QString windowTitleText;
    QString contentText;
    bool flagA = false;
    bool flagB = false;
    bool flagC = false;
    QString textA;
    bool flagD = false;
    QString textB;
    QString textC;
    bool flagE = false;
    bool flagF = false;
    bool flagG = false;
    bool flagH = false;
    bool lastFlag = false;   // the constructor's last argument, stored here on purpose
    QString headingText;
    QString reservedText;    // no argument fills it
    bool reservedFlag = false;
    QString pushScenes;
    QString pushBody;
};

Q_DECLARE_METATYPE(StudyActivityNoticeWidgetDisplayPod)

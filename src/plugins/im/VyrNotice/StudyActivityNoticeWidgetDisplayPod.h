#pragma once

#include "VyrNoticeExport.h"

#include <QMetaType>
#include <QString>

/**
 * The host's ready-made texts for a study activity notice, handed to
 * NoticeListModel::addStudyActivityNotice() behind a QSharedPointer and given
 * back unchanged with NoticeListWidget::viewStudyActivityNoticeDetails().
 *
 * The gathered row reads windowTitleText, contentText and headingText. The
 * flags and the texts A to C are the host's own: this library carries them
 * back to it. A plain copyable value; the default one has every string empty
 * and every flag false.
 */
class VYRNOTICE_EXPORT StudyActivityNoticeWidgetDisplayPod
{
public:
    /** Every string empty, every flag false. */
    StudyActivityNoticeWidgetDisplayPod();
    /**
     * The fields in declaration order, except that @p lastFlag comes last
     * here and reservedText and reservedFlag take no argument.
     */
    StudyActivityNoticeWidgetDisplayPod(const QString& windowTitleText, const QString& contentText, bool flagA,
                                        bool flagB, bool flagC, const QString& textA, bool flagD, const QString& textB,
                                        const QString& textC, bool flagE, bool flagF, bool flagG, bool flagH,
                                        const QString& headingText, const QString& pushScenes,
                                        const QString& pushBody, bool lastFlag);
    /** A field-by-field copy of @p other. */
    StudyActivityNoticeWidgetDisplayPod(const StudyActivityNoticeWidgetDisplayPod& other);
    /** Takes the fields of @p other, which is left valid but unspecified. */
    StudyActivityNoticeWidgetDisplayPod(StudyActivityNoticeWidgetDisplayPod&& other) noexcept;
    /** Copies every field of @p other. */
    StudyActivityNoticeWidgetDisplayPod& operator=(const StudyActivityNoticeWidgetDisplayPod& other);
    /** Takes the fields of @p other, which is left valid but unspecified. */
    StudyActivityNoticeWidgetDisplayPod& operator=(StudyActivityNoticeWidgetDisplayPod&& other) noexcept;
    /** Nothing beyond the fields. */
    ~StudyActivityNoticeWidgetDisplayPod();

    /**
     * @name Named setters
     * The readable way to fill a record: each sets the field of its name to
     * @p value and returns the record, so that calls chain:
     * @code
     * auto display = QSharedPointer<StudyActivityNoticeWidgetDisplayPod>::create();
     * display->setWindowTitleText(kind).setHeadingText(heading).setContentText(body)
     *     .setPushScenes(scenes).setPushBody(body);
     * @endcode
     * A field left alone keeps the default constructor's value (empty, false).
     * The 17-argument constructor stays for hosts that use it.
     * @{
     */
    StudyActivityNoticeWidgetDisplayPod& setWindowTitleText(const QString& value);
    StudyActivityNoticeWidgetDisplayPod& setContentText(const QString& value);
    StudyActivityNoticeWidgetDisplayPod& setHeadingText(const QString& value);
    StudyActivityNoticeWidgetDisplayPod& setPushScenes(const QString& value);
    StudyActivityNoticeWidgetDisplayPod& setPushBody(const QString& value);
    StudyActivityNoticeWidgetDisplayPod& setTextA(const QString& value);
    StudyActivityNoticeWidgetDisplayPod& setTextB(const QString& value);
    StudyActivityNoticeWidgetDisplayPod& setTextC(const QString& value);
    StudyActivityNoticeWidgetDisplayPod& setFlagA(bool value);
    StudyActivityNoticeWidgetDisplayPod& setFlagB(bool value);
    StudyActivityNoticeWidgetDisplayPod& setFlagC(bool value);
    StudyActivityNoticeWidgetDisplayPod& setFlagD(bool value);
    StudyActivityNoticeWidgetDisplayPod& setFlagE(bool value);
    StudyActivityNoticeWidgetDisplayPod& setFlagF(bool value);
    StudyActivityNoticeWidgetDisplayPod& setFlagG(bool value);
    StudyActivityNoticeWidgetDisplayPod& setFlagH(bool value);
    StudyActivityNoticeWidgetDisplayPod& setLastFlag(bool value);
    /** @} */

    /** The activity's kind: the pop-up's title, as typed; the row's body begins with it in brackets, as markup. */
    QString windowTitleText;
    /** The body of the notice, after the bracketed kind. Rich text, not escaped, not elided. */
    QString contentText;
    /** Carried for the host. */
    bool flagA = false;
    /** Carried for the host. */
    bool flagB = false;
    /** Carried for the host. */
    bool flagC = false;
    /** Carried for the host. */
    QString textA;
    /** Carried for the host. */
    bool flagD = false;
    /** Carried for the host. */
    QString textB;
    /** Carried for the host. */
    QString textC;
    /** Carried for the host. */
    bool flagE = false;
    /** Carried for the host. */
    bool flagF = false;
    /** Carried for the host. */
    bool flagG = false;
    /** Carried for the host. */
    bool flagH = false;
    /** Carried for the host; the constructor's last argument, stored here on purpose. */
    bool lastFlag = false;
    /** The heading of the notice, shown as typed: the pop-up's heading and the gathered row's title. */
    QString headingText;
    /** Empty: no argument fills it. */
    QString reservedText;
    /** False: no argument fills it. */
    bool reservedFlag = false;
    /** The "push_scenes" value for tracking this activity; the gathered row does not read it. */
    QString pushScenes;
    /** The "push_body" value for tracking this activity; the gathered row does not read it. */
    QString pushBody;
};

/** Registered under the name "StudyActivityNoticeWidgetDisplayPod" on first use. */
Q_DECLARE_METATYPE(StudyActivityNoticeWidgetDisplayPod)

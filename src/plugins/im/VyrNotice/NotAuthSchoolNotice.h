#pragma once

#include "VyrNoticeExport.h"

#include <QString>
#include <QWidget>

class QCheckBox;
class QPushButton;

/**
 * @class NotAuthSchoolNotice NotAuthSchoolNotice.h <VyrNotice/NotAuthSchoolNotice.h>
 *
 * @brief The content of the reminder that the school's account still needs
 * certification.
 *
 * A plain widget, without window flags, animation or timer. The host puts it
 * into a window of its own, decides when to show it (whether the school is
 * certified and whether the reminder was switched off are decided outside),
 * and closes that window on signalClose().
 *
 * The certification button opens the school's certification page through the
 * school's own domain, asked from Org::SchoolSettingManager at construction;
 * the button stays disabled until that domain is known. A domain that isn't a
 * bare host name opens nothing: the refusal is logged and the notice closes. The check box stores
 * the setting "NOT_AUTH_SCHOOL_NOTICE" in the general VyrSettings store on
 * every click: true means go on reminding. The host reads it.
 *
 * @code
 * auto* notice = new NotAuthSchoolNotice(box);
 * QObject::connect(notice, &NotAuthSchoolNotice::signalClose, box, &QWidget::close);
 * @endcode
 */
class VYRNOTICE_EXPORT NotAuthSchoolNotice : public QWidget
{
    Q_OBJECT
public:
    /**
     * Builds the notice, connects it to the school settings and asks them for
     * the school's domain (query flag 1) of the signed-in user.
     * @param parent the usual parent
     */
    explicit NotAuthSchoolNotice(QWidget* parent = nullptr);

signals:
    /**
     * Emitted by the cancel button and after the certification page was
     * opened; the host closes the window that holds the notice.
     */
    void signalClose();

private slots:
    /** Stores the check box's state as the setting, on every click. */
    void remindChange();
    /** Opens the certification page on the school's own domain, then closes. */
    void toAuthLink();
    /** Takes an answer of the domain query; answers of another flag are only logged. */
    void onGetUidDomainName(qlonglong uid, QString url, int flag, int networkError, int errorNo,
                            QString errorString);

private:
    void initUi();

    QCheckBox* m_remindCBx = nullptr;
    QPushButton* m_certificationBtn = nullptr;
    QString m_uidDomainName;
};

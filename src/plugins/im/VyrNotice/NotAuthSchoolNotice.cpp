#include "NotAuthSchoolNotice.h"

#include "CoreEngine.h"
#include "GlobalStyle.h"
#include "HostName_p.h"
#include "NoticeLog_p.h"
#include "SchoolSettingManager.h"
#include "VyrSettings.h"
#include "VyrUtils.h"

#include <QCheckBox>
#include <QDebug>
#include <QDesktopServices>
#include <QFile>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>

namespace {

const int kDomainQueryFlag = 1;
// A refused domain is logged this far; it may be of any length.
const int kLoggedDomainLength = 80;

// An 88 x 32 button of the message box, 14 px, widened to its text.
QPushButton* buildButton(QWidget* parent, const QString& objectName, const QString& text)
{
    auto* button = new QPushButton(parent);
    button->setObjectName(objectName);
    button->setText(text);
    button->setFixedSize(88, 32);
    GlobalStyle::getInstance()->applyCurrentFontSize(button, 14, 50);
    GlobalStyle::getInstance()->applyPushButtonAutoCalcSize(button);
    return button;
}

} // namespace

NotAuthSchoolNotice::NotAuthSchoolNotice(QWidget* parent)
    : QWidget(parent, Qt::WindowFlags())
{
    // A missing style sheet goes unnoticed: the notice then keeps Qt's looks.
    QFile file(QStringLiteral(":/im/qss/notice/notauthschoolnotice.qss"));
    file.open(QIODevice::ReadOnly);
    setStyleSheet(QString::fromUtf8(file.readAll()));
    file.close();

    auto* manager = Org::SchoolSettingManager::getInstance();
    // Intended: disconnect first, so the connection exists exactly once.
    disconnect(manager, &Org::SchoolSettingManager::signalGetUidDomainNameFinished, this,
               &NotAuthSchoolNotice::onGetUidDomainName);
    connect(manager, &Org::SchoolSettingManager::signalGetUidDomainNameFinished, this,
            &NotAuthSchoolNotice::onGetUidDomainName);
    m_uidDomainName = manager->getUidDomainName(VyrEngine::CoreEngine::instance()->currentUid(), kDomainQueryFlag);

    initUi();
}

void NotAuthSchoolNotice::initUi()
{
    auto* style = GlobalStyle::getInstance();

    auto* message = new QLabel(this);
    message->setObjectName(QStringLiteral("IM_MessageBoxContent"));
    message->setWordWrap(true);
    message->setText(qtTrId("ID_NotAuthSchoolNotice_NeedCertification", -1));

    m_remindCBx = new QCheckBox(this);
    m_remindCBx->setObjectName(QStringLiteral("remindCBx"));
    m_remindCBx->setText(qtTrId("ID_NotAuthSchoolNotice_NoMoreRemind", -1));
    style->applyCurrentStyle(m_remindCBx, QStringLiteral("QCheckBox_Normal"), false);
    m_remindCBx->setStyleSheet(QStringLiteral("color: #8D9AA9;"));
    connect(m_remindCBx, &QCheckBox::clicked, this, &NotAuthSchoolNotice::remindChange);

    m_certificationBtn = buildButton(this, QStringLiteral("IM_GreenBgWhiteText_Button"),
                                     qtTrId("ID_NotAuthSchoolNotice_Certification", -1));
    connect(m_certificationBtn, &QPushButton::clicked, this, &NotAuthSchoolNotice::toAuthLink);

    auto* cancel = buildButton(this, QStringLiteral("IM_WhiteBgBlackText_Button"), qtTrId("ID_Cancel", -1));
    connect(cancel, &QPushButton::clicked, this, &NotAuthSchoolNotice::signalClose);

    auto* buttons = new QHBoxLayout();
    buttons->setContentsMargins(0, 0, 0, 0);
    buttons->addStretch(0);
    buttons->addWidget(cancel);
    buttons->addSpacing(8);
    buttons->addWidget(m_certificationBtn);

    auto* main = new QVBoxLayout(this);
    main->setContentsMargins(24, 20, 24, 12);
    main->setSpacing(0);
    main->addWidget(message);
    main->addSpacing(20);
    main->addWidget(m_remindCBx);
    main->addSpacing(24);
    main->addLayout(buttons);

    m_certificationBtn->setEnabled(!m_uidDomainName.isEmpty());
}

void NotAuthSchoolNotice::remindChange()
{
    // Intended: written on every click, even when the value is the same; the last click wins.
    VyrSettings* settings = VyrSettings::instance(QString());
    if (m_remindCBx->checkState() == Qt::Checked)
        settings->setSetting(QStringLiteral("NOT_AUTH_SCHOOL_NOTICE"), false);
    else if (m_remindCBx->checkState() == Qt::Unchecked)
        settings->setSetting(QStringLiteral("NOT_AUTH_SCHOOL_NOTICE"), true);
}

void NotAuthSchoolNotice::toAuthLink()
{
    QString url = VyrUtils::genTavlaUrl(TAVLA_URL_SCHOOL_CERTIFICATION);
    if (!m_uidDomainName.isEmpty()) {
        // The server's domain becomes the host of the address: anything but a
        // bare host name could lead elsewhere (a path, a user part, a port).
        QString reason;
        if (!HostName::isBare(m_uidDomainName, &reason)) {
            qCInfo(lcVyrNotice) << "toAuthLink refused, the school domain is not a host name:" << reason
                    << m_uidDomainName.left(kLoggedDomainLength) << "length" << m_uidDomainName.size();
            emit signalClose();
            return;
        }
        // The page's path, reached through the school's own domain.
        url.remove(0, VyrUtils::getDomainUrl(true, true).length());
        url = QStringLiteral("https://") + VyrUtils::urlSplicing({m_uidDomainName, url});
    }
    qCInfo(lcVyrNotice) << "toAuthLink" << url;
    // Intended: the result isn't looked at; the notice closes either way.
    QDesktopServices::openUrl(QUrl(url, QUrl::TolerantMode));
    emit signalClose();
}

void NotAuthSchoolNotice::onGetUidDomainName(qlonglong uid, QString url, int flag, int networkError, int errorNo,
                                             QString errorString)
{
    // Intended: every answer is logged, also those of another query.
    qCInfo(lcVyrNotice) << "NotAuthSchoolNotice::onGetUidDomainName---------------->" << uid << url << flag << networkError
            << errorNo << errorString;
    // Intended: an answer of another flag belongs to another query.
    if (flag != kDomainQueryFlag)
        return;
    m_uidDomainName = url;
    // Intended: only errorNo 1 touches the button; any other leaves it as it is.
    if (errorNo == 1)
        m_certificationBtn->setEnabled(!m_uidDomainName.isEmpty());
    // Intended: what the manager holds now replaces the answer's url.
    m_uidDomainName = Org::SchoolSettingManager::getInstance()->getUidDomainName(quint64(uid), kDomainQueryFlag);
    // Intended: the second line leaves out the flag.
    qCInfo(lcVyrNotice) << "m_uidDomainName" << uid << url << networkError << errorNo << errorString;
}

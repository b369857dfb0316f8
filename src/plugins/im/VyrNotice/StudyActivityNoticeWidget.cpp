#include "StudyActivityNoticeWidget.h"

#include "BoundedHtml_p.h"
#include "CardParts_p.h"
#include "ContactsEngine.h"
#include "CoreEngine.h"
#include "NameSpan_p.h"
#include "NoticeLog_p.h"
#include "StudyActivityMessagePushManager.h"

#include <QBoxLayout>
#include <QDebug>
#include <QLocale>
#include <QLabel>
#include <QPushButton>
#include <QTextBrowser>
#include <QToolButton>
#include <algorithm>

StudyActivityNoticeWidget::StudyActivityNoticeWidget(QSharedPointer<AppendixDataPod> pod,
                                                     QSharedPointer<StudyActivityNoticeWidgetDisplayPod> displayPod,
                                                     QWidget* parent)
    : PopNoticeBaseWidget(parent)
    , m_appendix(pod)
    , m_displayPod(displayPod)
{
    qCInfo(lcVyrNotice) << "ZZZZZZZZZZZZZZZZZZZ StudyActivityNoticeWidget";
    initUi();
    updateData();

    // Queued: a signal emitted while the window is built acts after the constructor.
    connect(&StudyActivityMessagePushManager::instance(),
            &StudyActivityMessagePushManager::signalActivityDeleteNoticeSingal, this,
            &StudyActivityNoticeWidget::onActivityDeleted, Qt::QueuedConnection);
    connect(VyrEngine::ContactsEngine::instance(), &VyrEngine::ContactsEngine::signalDelCluster, this,
            &StudyActivityNoticeWidget::onClustersDeleted, Qt::QueuedConnection);
    connect(VyrEngine::ContactsEngine::instance(), &VyrEngine::ContactsEngine::updateUserInfo, this,
            &StudyActivityNoticeWidget::onUsersChanged, Qt::QueuedConnection);
}

void StudyActivityNoticeWidget::initUi()
{
    CardParts::fixCardSize(this, m_shadowMargins);
    // Shown only when the display record's texts are empty: updateData replaces both.
    setWindowTitle(qtTrId("ID_HomeworkNotice_TaskNotice", -1));

    // The host's rich text, in a browser that follows no link and loads nothing from outside.
    QBoxLayout* topRow =
        CardParts::buildTopRow(m_contentWidget, this, qtTrId("ID_HomeworkNotice_TaskNotice", -1),
                                     &m_iconLabel, &m_headingLabel, &m_contentBrowser,
                                     new BoundedHtml::Browser(m_contentWidget));
    CardParts::setFirstPicture(m_iconLabel);
    CardParts::buildDetailsAndLater(m_contentWidget, &m_viewDetailsBtn, &m_laterBtn);
    CardParts::installBody(m_contentWidget, topRow, {m_viewDetailsBtn, m_laterBtn});
    // Intended: the constructor's line is written a second time, so each window logs it twice.
    qCInfo(lcVyrNotice) << "ZZZZZZZZZZZZZZZZZZZ StudyActivityNoticeWidget";

    connect(m_viewDetailsBtn, &QPushButton::clicked, this, &StudyActivityNoticeWidget::onViewDetails);
    connect(m_laterBtn, &QPushButton::clicked, this, &StudyActivityNoticeWidget::onLater);
    // Only tracks: the card's own connection closes the window.
    connect(m_closeBtn, &QToolButton::clicked, this, [this]() { trackClick(false); });
}

void StudyActivityNoticeWidget::updateData()
{
    // The host must pass both records; without them there is nothing to show.
    if (!m_displayPod)
        return;
    setWindowTitle(m_displayPod->windowTitleText);
    CardParts::setHeading(m_headingLabel, m_displayPod->headingText);
    if (hasCourse())
        CardParts::loadCover(m_iconLabel, this, m_appendix->courseData->courseId, false);
    // Intended: built like the other notices' spans and left unused; the host's text is final.
    const QString titleSpan = NameSpan::quoted(QStringLiteral("%1"), NameSpan::isChina(locale()));
    const QString userSpan = NameSpan::plain(QStringLiteral("%1"));
    const QString paddedSpan = NameSpan::padded(QStringLiteral("%1"));
    Q_UNUSED(titleSpan)
    Q_UNUSED(userSpan)
    Q_UNUSED(paddedSpan)
    // The host's rich text, as it comes: no escaping here, only bounds. The browser is made in initUi.
    static_cast<BoundedHtml::Browser*>(m_contentBrowser)->setBoundedText(m_displayPod->contentText);
}

bool StudyActivityNoticeWidget::isSameActivity(QSharedPointer<AppendixDataPod> other)
{
    if (!m_appendix)
        return false;
    return m_appendix->isSameActivity(other);
}

bool StudyActivityNoticeWidget::hasCourse() const
{
    return m_appendix && m_appendix->courseData;
}

void StudyActivityNoticeWidget::trackClick(bool checkUp)
{
    QMap<QString, QVariant> data = CardParts::clickData(m_displayPod ? m_displayPod->pushBody : QString(), m_displayPod ? m_displayPod->pushScenes : QString(), checkUp);
    trackClickPushMessage(data);
}

void StudyActivityNoticeWidget::onViewDetails()
{
    // Intended: without the activity's course the button does nothing at all.
    if (!hasCourse())
        return;
    trackClick(true);
    emit signalSeeDetails(m_appendix);
    close();
}

void StudyActivityNoticeWidget::onLater()
{
    trackClick(false);
    close();
}

void StudyActivityNoticeWidget::onActivityDeleted(QSharedPointer<AppendixDataPod> pod)
{
    if (isSameActivity(pod))
        close();
}

void StudyActivityNoticeWidget::onClustersDeleted(const std::vector<VyrEngine::ClusterID>& ids)
{
    if (!hasCourse())
        return;
    if (CardParts::namesCourse(ids, m_appendix->courseData->courseId))
        close();
}

void StudyActivityNoticeWidget::onUsersChanged(const std::vector<quint64>& uids)
{
    const quint64 uid = VyrEngine::CoreEngine::instance()->currentUid();
    if (std::find(uids.begin(), uids.end(), uid) != uids.end())
        updateData();
}

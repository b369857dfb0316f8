#include "MicroCourseNoticeWidget.h"

#include "CardParts_p.h"
#include "CoreEngine.h"
#include "FileDownloader.h"
#include "ImageGuard_p.h"
#include "FileServerUrl_p.h"
#include "ImageOp.h"
#include "NoticeLog_p.h"
#include "VyrUtils.h"

#include <QBoxLayout>
#include <QDebug>
#include <QFontMetrics>
#include <QLabel>
#include <QPushButton>
#include <QSet>
#include <QToolButton>
#include <QUrl>

namespace {
// A cover is wide, so its label is too.
constexpr int kCoverWidth = CardParts::IconSize;
constexpr int kCoverHeight = 20;
// Narrower than the 200 pixels of the other headings.
constexpr int kHeadingWidth = 180;
const QString kFallbackCover = QStringLiteral(":/chat/images/chat/cover.svg");
const QString kScene = QStringLiteral("发布微课");
// A refused path is logged, cut to this many characters.
constexpr int kLoggedPathLength = 200;
} // namespace

MicroCourseNoticeWidget::MicroCourseNoticeWidget(quint64 id, int type, QJsonObject info, QWidget* parent)
    : PopNoticeBaseWidget(parent)
    , m_id(id)
    , m_noticeType(type)
    , m_lectureInfo(info)
{
    initUi();
    m_downloader = new FileDownloader(this, QSet<QString>());
    connect(m_downloader, &FileDownloader::finished, this, &MicroCourseNoticeWidget::onDownloadFinished);
    connect(m_downloader, &FileDownloader::error, this, &MicroCourseNoticeWidget::onDownloadError);
    updateData();
}

void MicroCourseNoticeWidget::initUi()
{
    CardParts::fixCardSize(this, m_shadowMargins);
    setWindowTitle(qtTrId("ID_MicroCourseNotice_Notice", -1));

    m_iconLabel = new QLabel(m_contentWidget);
    m_iconLabel->setObjectName(QStringLiteral("m_iconLabel"));
    m_iconLabel->setFixedSize(kCoverWidth, kCoverHeight);

    // The lecture's name is not escaped: the heading shows it as typed.
    m_headingLabel = CardParts::buildHeadingLabel(this, m_contentWidget);
    m_contentLabel = CardParts::buildContentLabel(this, m_contentWidget);
    QBoxLayout* topRow = CardParts::buildPictureAndText(m_iconLabel, 16, m_headingLabel, m_contentLabel);
    CardParts::buildDetailsAndLater(m_contentWidget, &m_viewDetailsBtn, &m_laterBtn);
    CardParts::installBody(m_contentWidget, topRow, {m_viewDetailsBtn, m_laterBtn});

    connect(m_viewDetailsBtn, &QPushButton::clicked, this, &MicroCourseNoticeWidget::onViewDetails);
    connect(m_laterBtn, &QPushButton::clicked, this, &MicroCourseNoticeWidget::onLater);
    // Only tracks: the card's own connection closes the window.
    connect(m_closeBtn, &QToolButton::clicked, this, [this]() { trackClick(false); });
}

void MicroCourseNoticeWidget::updateData()
{
    // One case only: any other type or status leaves nothing to say.
    if (m_noticeType != 2) {
        close();
        return;
    }
    // A missing key reads as 0, so it closes too.
    if (m_lectureInfo.value(QStringLiteral("auditStatus")).toInt() != 4) {
        close();
        return;
    }
    const QString name = m_lectureInfo.value(QStringLiteral("lectureName")).toString();
    // Shown as plain text by the label, so no escaping.
    m_headingLabel->setText(m_headingLabel->fontMetrics().elidedText(name, Qt::ElideRight, kHeadingWidth));
    m_contentLabel->setText(qtTrId("ID_MicroCourseNotice_YourMicrolectureAuditFailed", -1));

    const QString coverUrl = m_lectureInfo.value(QStringLiteral("coverUrl")).toString();
    if (coverUrl.isEmpty()) {
        setAvatarPixmap(QPixmap(kFallbackCover));
        return;
    }
    // The path comes from a server: fetched only from the file server, never elsewhere or locally.
    QString refusal;
    const QUrl address = FileServerUrl::resolve(VyrEngine::CoreEngine::instance()->fileServerPrefix(), coverUrl, &refusal);
    if (address.isEmpty()) {
        qCInfo(lcVyrNotice) << "micro-course cover refused:" << refusal << "coverUrl:" << coverUrl.left(kLoggedPathLength);
        setAvatarPixmap(QPixmap(kFallbackCover));
        return;
    }
    m_downloader->setTargetUrl(address);
    m_downloader->download(QNetworkRequest::PreferNetwork);
}

void MicroCourseNoticeWidget::setAvatarPixmap(QPixmap pixmap)
{
    m_iconLabel->setPixmap(ImageOp::roundedRectCoursePixmap(pixmap, QSizeF(m_iconLabel->size()),
                                                            VyrUtils::screenDeviceRatio(m_iconLabel)));
}

void MicroCourseNoticeWidget::onDownloadFinished()
{
    // The server chooses the bytes: checked and decoded off the GUI thread,
    // no larger than the label needs; a refused picture gets the fallback.
    const QSize shownAt = m_iconLabel->size() * VyrUtils::screenDeviceRatio(m_iconLabel);
    ImageGuard::decodeLater(this, m_downloader->downloadedData(), shownAt, [this](const QImage& image) {
        setAvatarPixmap(image.isNull() ? QPixmap(kFallbackCover) : QPixmap::fromImage(image));
    });
}

void MicroCourseNoticeWidget::onDownloadError(int code, const QString& message)
{
    Q_UNUSED(code)
    Q_UNUSED(message)
    // Whatever went wrong, the fallback; no retry.
    setAvatarPixmap(QPixmap(kFallbackCover));
}

void MicroCourseNoticeWidget::trackClick(bool checkUp)
{
    QMap<QString, QVariant> data = CardParts::clickData(m_contentLabel->text(), kScene, checkUp);
    trackClickPushMessage(data);
}

void MicroCourseNoticeWidget::onViewDetails()
{
    // Intended: act first, track after; closing only schedules the deletion.
    emit signalSeeDetails();
    close();
    trackClick(true);
}

void MicroCourseNoticeWidget::onLater()
{
    // Intended: close first, track after, as the homework notice does.
    close();
    trackClick(false);
}

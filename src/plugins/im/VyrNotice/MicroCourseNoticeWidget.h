#pragma once

#include "PopNoticeBaseWidget.h"
#include "VyrNoticeExport.h"

#include <QJsonObject>
#include <QPixmap>

class FileDownloader;
class QLabel;
class QPushButton;

// The pop-up that tells the author of a micro-lecture that its audit failed.
//
// It is built from the server's JSON: "auditStatus" (must be 4),
// "lectureName" (the heading) and "coverUrl" (the cover's path on the file
// server, may be empty). `type` must be 2; any other type or status closes
// the window at once, since there is nothing to say. The cover is fetched
// over HTTP from CoreEngine::fileServerPrefix() plus "coverUrl"; an empty
// path or any failure shows the fallback cover instead, and so does a path
// that would lead off the file server (logged, nothing is fetched).
//
// A host creates the window, connects signalSeeDetails(), calls popNotice()
// and keeps no pointer. It closes on the user's word, on log-out and 16
// seconds after it popped; a download still running then is dropped.
//
// The downloaded cover is decoded on the thread pool, only after its header
// passed: at most 4096 pixels a side and 8 MB, an SVG naming nothing outside
// itself. Anything else shows the fallback cover, with an info line.
class VYRNOTICE_EXPORT MicroCourseNoticeWidget : public PopNoticeBaseWidget
{
    Q_OBJECT
public:
    MicroCourseNoticeWidget(quint64 id, int type, QJsonObject info, QWidget* parent = nullptr);

signals:
    // The user asked to see the micro-lecture; emitted before the window closes.
    void signalSeeDetails();

private slots:
    void onDownloadFinished();
    void onDownloadError(int code, const QString& message);
    void onViewDetails();
    void onLater();

private:
    void initUi();
    void updateData();
    void setAvatarPixmap(QPixmap pixmap);
    void trackClick(bool checkUp);

    // Intended: kept from the constructor and read by nothing.
    quint64 m_id = 0;
    qint64 m_noticeType = 0;
    QJsonObject m_lectureInfo;
    FileDownloader* m_downloader = nullptr;
    QLabel* m_iconLabel = nullptr;
    QLabel* m_headingLabel = nullptr;
    QLabel* m_contentLabel = nullptr;
    QPushButton* m_viewDetailsBtn = nullptr;
    QPushButton* m_laterBtn = nullptr;
};

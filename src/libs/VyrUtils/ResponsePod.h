#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

// What an HTTP request of VyrHttpManager came back with. Handed to the
// caller's callback through a QSharedPointer.
//
// Host side: a plain record; VyrHttpManager fills it, a host or a test may
// build one by hand.
class ResponsePod
{
public:
    // Qt's text for the failure, empty when an answer arrived.
    QString errorString;
    // The address that was asked.
    QUrl url;
    // QNetworkReply::NetworkError as a number; 0 when an answer arrived.
    // An HTTP error status counts as a failure (Qt's 2xx/3xx rule).
    int networkError = 0;
    // The body of the answer, also for an error status.
    QByteArray body;
    // The HTTP status, 0 when none arrived (refused, timed out, aborted).
    int httpStatus = 0;
};

#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

/**
 * What an HTTP request of VyrHttpManager came back with. Handed to the
 * caller's callback through a QSharedPointer.
 *
 * Host side: a plain record; VyrHttpManager fills it, a host or a test may
 * build one by hand.
 */
class ResponsePod
{
public:
    /** Qt's text for the failure, empty when an answer arrived. */
    QString errorString;
    /** The address that was asked. */
    QUrl url;
    /**
     * QNetworkReply::NetworkError as a number; 0 when an answer with a 2xx
     * status arrived. Any other status is a failure: Qt's number for 4xx and
     * 5xx, UnknownContentError (299) for a 3xx that was not followed.
     */
    int networkError = 0;
    /**
     * The body of the answer, also for an error status; empty when the
     * transfer was aborted (over the size cap, timed out, refused redirect).
     */
    QByteArray body;
    /** The HTTP status, 0 when none arrived (refused, timed out, aborted). */
    int httpStatus = 0;
    /** Body bytes taken off the connection: never more than the cap plus one. */
    qint64 bytesReceived = 0;
};

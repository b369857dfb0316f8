#pragma once

#include <QPointer>
#include <QWidget>

class QLabel;

/**
 * The client's person card: a small floating window with a person's picture,
 * name, number and telephone, opened next to the pointer. One card is open at
 * a time; opening another closes the first. It closes with its × button, or
 * when the host closes it.
 *
 * showFloatWidget(uid, pos, mode, clusterId, canAnswerRequest, fromChat):
 *   `mode` places the card's top-left (PosTopLeft) or top-right
 *   (PosTopRight) corner at `pos`; `clusterId` is the cluster the card was
 *   opened from (0: none); `canAnswerRequest` shows the line saying the
 *   person's friend request waits for the user's answer; `fromChat` marks a
 *   card opened from a chat window. A person the contacts engine doesn't know
 *   gets a card with the number only.
 *
 * Host side:
 *   PersonInfoWidget::current()   the open card, or null
 *   uid(), clusterId(), canAnswerRequest(), isFromChat(), nameText()
 *   closeCurrent()                closes the open card
 */
class PersonInfoWidget : public QWidget
{
    Q_OBJECT
public:
    enum PosMode
    {
        PosTopLeft = 0,
        PosTopRight = 1,
    };

    static void showFloatWidget(quint64 uid, QPoint pos, PosMode mode, quint64 clusterId, bool canAnswerRequest,
                                bool fromChat);

    static PersonInfoWidget* current();
    static void closeCurrent();

    quint64 uid() const { return m_uid; }
    quint64 clusterId() const { return m_clusterId; }
    bool canAnswerRequest() const { return m_canAnswerRequest; }
    bool isFromChat() const { return m_fromChat; }
    QString nameText() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    PersonInfoWidget(quint64 uid, quint64 clusterId, bool canAnswerRequest, bool fromChat);
    void build();
    static QPixmap avatarFor(quint64 uid, const QString& name);

    static QPointer<PersonInfoWidget> m_pCurrent;
    quint64 m_uid;
    quint64 m_clusterId;
    bool m_canAnswerRequest;
    bool m_fromChat;
    QLabel* m_nameLabel = nullptr;
};

#include "PersonInfoWidget.h"

#include "ContactsEngine.h"
#include "UserInfo.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

QPointer<PersonInfoWidget> PersonInfoWidget::m_pCurrent;

namespace {
const int kCardWidth = 280;
const int kAvatarSide = 56;
const char* const kCardStyle =
    "QLabel#personName { font-size: 16px; color: #000000; }"
    "QLabel#personLine { font-size: 12px; color: #666666; }"
    "QLabel#personAnswer { font-size: 12px; color: #009265; }"
    "QPushButton#personClose { border: none; background: transparent; color: #999999; font-size: 16px; }";

bool chinese()
{
    return QLocale().language() == QLocale::Chinese;
}
}

void PersonInfoWidget::showFloatWidget(quint64 uid, QPoint pos, PosMode mode, quint64 clusterId,
                                       bool canAnswerRequest, bool fromChat)
{
    closeCurrent();
    auto* card = new PersonInfoWidget(uid, clusterId, canAnswerRequest, fromChat);
    card->adjustSize();
    QPoint topLeft = mode == PosTopRight ? pos - QPoint(card->width(), 0) : pos;
    // Keep the card on the screen the pointer is on.
    if (QScreen* screen = QGuiApplication::screenAt(pos)) {
        const QRect area = screen->availableGeometry();
        topLeft.setX(qBound(area.left(), topLeft.x(), qMax(area.left(), area.right() - card->width())));
        topLeft.setY(qBound(area.top(), topLeft.y(), qMax(area.top(), area.bottom() - card->height())));
    }
    card->move(topLeft);
    m_pCurrent = card;
    card->show();
}

PersonInfoWidget* PersonInfoWidget::current()
{
    return m_pCurrent.data();
}

void PersonInfoWidget::closeCurrent()
{
    if (m_pCurrent)
        m_pCurrent->close();
    m_pCurrent.clear();
}

PersonInfoWidget::PersonInfoWidget(quint64 uid, quint64 clusterId, bool canAnswerRequest, bool fromChat)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint)
    , m_uid(uid)
    , m_clusterId(clusterId)
    , m_canAnswerRequest(canAnswerRequest)
    , m_fromChat(fromChat)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_TranslucentBackground);
    setStyleSheet(QString::fromLatin1(kCardStyle));
    setFixedWidth(kCardWidth);
    build();
}

void PersonInfoWidget::build()
{
    const auto user = VyrEngine::ContactsEngine::instance()->userInfo(m_uid, 0);
    const QString name = user ? user->displayName() : QString();

    auto* avatar = new QLabel(this);
    avatar->setFixedSize(kAvatarSide, kAvatarSide);
    avatar->setPixmap(avatarFor(m_uid, name));
    m_nameLabel = new QLabel(name, this);
    m_nameLabel->setObjectName(QStringLiteral("personName"));
    m_nameLabel->setTextFormat(Qt::PlainText);
    auto* number = new QLabel(QStringLiteral("%1 %2").arg(chinese() ? QStringLiteral("号码") : QStringLiteral("No."))
                                  .arg(m_uid),
                              this);
    number->setObjectName(QStringLiteral("personLine"));
    auto* close = new QPushButton(QStringLiteral("\u00D7"), this);
    close->setObjectName(QStringLiteral("personClose"));
    close->setFixedSize(20, 20);
    connect(close, &QPushButton::clicked, this, &QWidget::close);

    auto* text = new QVBoxLayout;
    text->setSpacing(4);
    text->addWidget(m_nameLabel);
    text->addWidget(number);
    if (user && !user->telephone().isEmpty()) {
        auto* phone = new QLabel(user->telephone(), this);
        phone->setObjectName(QStringLiteral("personLine"));
        text->addWidget(phone);
    }
    if (m_canAnswerRequest) {
        auto* answer = new QLabel(chinese() ? QStringLiteral("请求添加你为好友，等待你的回复")
                                            : QStringLiteral("Asks to be your friend and waits for your answer"),
                                  this);
        answer->setObjectName(QStringLiteral("personAnswer"));
        answer->setWordWrap(true);
        text->addWidget(answer);
    }
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(16, 16, 8, 16);
    row->setSpacing(12);
    row->addWidget(avatar, 0, Qt::AlignTop);
    row->addLayout(text, 1);
    row->addWidget(close, 0, Qt::AlignTop);
}

QString PersonInfoWidget::nameText() const
{
    return m_nameLabel->text();
}

QPixmap PersonInfoWidget::avatarFor(quint64 uid, const QString& name)
{
    QPixmap pixmap(kAvatarSide, kAvatarSide);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor::fromHsv(int(uid % 360), 120, 200));
    painter.drawEllipse(pixmap.rect());
    painter.setPen(Qt::white);
    QFont font = painter.font();
    font.setPixelSize(22);
    painter.setFont(font);
    painter.drawText(pixmap.rect(), Qt::AlignCenter, name.isEmpty() ? QStringLiteral("?") : name.left(1));
    return pixmap;
}

void PersonInfoWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath card;
    card.addRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 6, 6);
    painter.setPen(QColor(0xDD, 0xDD, 0xDD));
    painter.setBrush(Qt::white);
    painter.drawPath(card);
}

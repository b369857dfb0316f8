#include "CardParts_p.h"

#include "ContactsEngine.h"
#include "CourseEngine.h"
#include "GlobalStyle.h"
#include "ImageOp.h"
#include "Model.h"
#include "NameSpan_p.h"
#include "OutsideText_p.h"
#include "PopNoticeBaseWidget.h"
#include "PushTracking_p.h"
#include "VyrUtils.h"

#include <QBoxLayout>
#include <QDebug>
#include <QFontMetrics>
#include <QLabel>
#include <QLocale>
#include <QPixmap>
#include <QPointer>
#include <QPushButton>
#include <QTextBrowser>
#include <QTextDocument>
#include <QTextOption>

#include <algorithm>

namespace {

// A card's sentence: wrapped anywhere, no scroll bars, no margin around the text.
void prepareBrowser(QTextBrowser* browser)
{
    QTextOption option = browser->document()->defaultTextOption();
    option.setWrapMode(QTextOption::WrapAnywhere);
    browser->document()->setDefaultTextOption(option);
    browser->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    browser->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    browser->document()->setDocumentMargin(0);
}

// The course-work cards' heading: built and hidden, never laid out.
QLabel* buildHiddenHeading(PopNoticeBaseWidget* window, const QString& title)
{
    auto* heading = new QLabel(window);
    heading->setObjectName(QStringLiteral("m_headingLabel"));
    heading->setFixedHeight(CardParts::HeadingHeight);
    OutsideText::setPlain(heading, title);
    window->applyCurrentStyle(heading, QStringLiteral("QLabel_MessageTitle"), false);
    window->applyCurrentFontSize(heading, 14, QFont::Medium);
    // Intended: the heading is built and hidden, never laid out; the card's title says it.
    heading->hide();
    return heading;
}

QTextBrowser* buildWorkBrowser(PopNoticeBaseWidget* window)
{
    auto* browser = new QTextBrowser(window);
    browser->setObjectName(QStringLiteral("m_contentBrowser"));
    window->applyCurrentStyle(browser, QStringLiteral("QLabel_MessageContent"), false);
    window->applyCurrentFontSize(browser, 13, QFont::Normal);
    // The text starts level with the icon's top.
    prepareBrowser(browser);
    return browser;
}

QBoxLayout* buildWorkTopRow(QLabel* icon, QTextBrowser* browser)
{
    auto* iconColumn = new QVBoxLayout();
    iconColumn->setContentsMargins(0, 0, 0, 0);
    iconColumn->setSpacing(0);
    iconColumn->addWidget(icon);
    iconColumn->addStretch();

    auto* textColumn = new QVBoxLayout();
    textColumn->setContentsMargins(0, 0, 0, 0);
    textColumn->setSpacing(0);
    textColumn->addWidget(browser);

    auto* topRow = new QHBoxLayout();
    topRow->setContentsMargins(0, 0, 0, 0);
    topRow->setSpacing(12);
    topRow->addLayout(iconColumn);
    topRow->addLayout(textColumn);
    return topRow;
}

// The working side's sentence: `key`'s template with the quoted title;
// an expiry template also gets the count.
QString workingText(const QWidget* window, const QTextBrowser* browser, const CardParts::WorkSentence& sentence)
{
    // An unknown state leaves no template; the window is already closing.
    if (sentence.key.isEmpty())
        return QString();
    const QString titleSpan = NameSpan::quoted(NameSpan::elidedEscaped(sentence.title, QFontMetrics(browser->font())),
                                               NameSpan::isChina(window->locale()));
    QString text = qtTrId(sentence.key.toUtf8().constData(), -1).arg(titleSpan);
    if (sentence.isExpiryKey)
        text = text.arg(sentence.expireCount);
    return text;
}

// The review side's sentence: the user's name, then the quoted title.
QString reviewText(const QWidget* window, const QTextBrowser* browser, const CardParts::WorkSentence& sentence,
                   const QString& userName)
{
    if (sentence.key.isEmpty())
        return QString();
    const QFontMetrics metrics(browser->font());
    const QString userSpan = NameSpan::plain(NameSpan::elidedEscaped(userName, metrics));
    const QString titleSpan =
        NameSpan::quoted(NameSpan::elidedEscaped(sentence.title, metrics), NameSpan::isChina(window->locale()));
    return qtTrId(sentence.key.toUtf8().constData(), -1).arg(userSpan, titleSpan);
}

} // namespace

void CardParts::fixCardSize(QWidget* window, const QMargins& shadow, int width, int height)
{
    window->setFixedSize(width + shadow.left() + shadow.right(), height + shadow.top() + shadow.bottom());
}

QBoxLayout* CardParts::buildTopRow(QWidget* page, PopNoticeBaseWidget* owner, const QString& heading,
                                         QLabel** iconLabel, QLabel** headingLabel, QTextBrowser** contentBrowser,
                                         QTextBrowser* browser)
{
    auto* icon = new QLabel(page);
    icon->setObjectName(QStringLiteral("m_iconLabel"));
    icon->setFixedSize(IconSize, IconSize);
    auto* leftColumn = new QVBoxLayout();
    leftColumn->setContentsMargins(0, 0, 0, 0);
    leftColumn->setSpacing(0);
    leftColumn->addWidget(icon);
    leftColumn->addStretch();

    auto* title = new QLabel(page);
    title->setObjectName(QStringLiteral("m_headingLabel"));
    title->setFixedHeight(HeadingHeight);
    // The heading becomes a course's or a cluster's name.
    OutsideText::setPlain(title, heading);

    if (!browser)
        browser = new QTextBrowser(page);
    browser->setObjectName(QStringLiteral("m_contentBrowser"));
    browser->setWordWrapMode(QTextOption::WrapAnywhere);
    // The text starts where the heading does.
    prepareBrowser(browser);
    if (owner) {
        owner->applyCurrentStyle(title, QStringLiteral("QLabel_MessageTitle"), false);
        owner->applyCurrentFontSize(title, 14, QFont::Medium);
        owner->applyCurrentStyle(browser, QStringLiteral("QLabel_MessageContent"), false);
        owner->applyCurrentFontSize(browser, 13, QFont::Normal);
    }

    auto* textColumn = new QVBoxLayout();
    textColumn->setContentsMargins(0, 0, 0, 0);
    textColumn->setSpacing(0);
    textColumn->addWidget(title);
    textColumn->addSpacing(4);
    textColumn->addWidget(browser);
    textColumn->addStretch();

    auto* topRow = new QHBoxLayout();
    topRow->setContentsMargins(0, 0, 0, 0);
    topRow->setSpacing(0);
    topRow->addLayout(leftColumn);
    topRow->addSpacing(12);
    topRow->addLayout(textColumn);

    *iconLabel = icon;
    *headingLabel = title;
    *contentBrowser = browser;
    return topRow;
}

QBoxLayout* CardParts::buildPictureAndText(QLabel* picture, int pictureTop, QLabel* heading, QLabel* content)
{
    auto* pictureColumn = new QVBoxLayout();
    pictureColumn->setContentsMargins(0, pictureTop, 0, 0);
    pictureColumn->setSpacing(0);
    pictureColumn->addWidget(picture);
    pictureColumn->addStretch();

    auto* textColumn = new QVBoxLayout();
    textColumn->setContentsMargins(0, 0, 0, 0);
    textColumn->setSpacing(0);
    textColumn->addWidget(heading);
    textColumn->addSpacing(4);
    textColumn->addWidget(content);

    auto* topRow = new QHBoxLayout();
    topRow->setContentsMargins(0, 0, 0, 0);
    topRow->setSpacing(0);
    topRow->addLayout(pictureColumn);
    topRow->addSpacing(12);
    topRow->addLayout(textColumn);
    return topRow;
}

QLabel* CardParts::buildHeadingLabel(PopNoticeBaseWidget* window, QWidget* parent)
{
    auto* heading = new QLabel(parent);
    heading->setObjectName(QStringLiteral("m_headingLabel"));
    heading->setFixedHeight(HeadingHeight);
    // The heading becomes an outside name: markup in it shows as typed.
    OutsideText::makePlain(heading);
    window->applyCurrentStyle(heading, QStringLiteral("QLabel_MessageTitle"), false);
    window->applyCurrentFontSize(heading, 14, QFont::Medium);
    return heading;
}

QLabel* CardParts::buildContentLabel(PopNoticeBaseWidget* window, QWidget* parent)
{
    auto* content = new QLabel(parent);
    content->setObjectName(QStringLiteral("m_contentLabel"));
    content->setWordWrap(true);
    window->applyCurrentStyle(content, QStringLiteral("QLabel_MessageContent"), false);
    window->applyCurrentFontSize(content, 13, QFont::Normal);
    return content;
}

void CardParts::setFirstPicture(QLabel* icon)
{
    icon->setPixmap(QPixmap(QStringLiteral(":/im/images/notice/macnotice.png"))
                        .scaled(icon->size(), Qt::IgnoreAspectRatio, Qt::FastTransformation));
}

QPushButton* CardParts::buildButton(QWidget* page, const QString& text, const QString& objectName,
                                          const QString& style)
{
    auto* button = new QPushButton(page);
    button->setObjectName(objectName);
    button->setFixedSize(ButtonWidth, ButtonHeight);
    button->setText(text);
    button->setAccessibleName(text);
    button->setCursor(Qt::PointingHandCursor);
    GlobalStyle::getInstance()->applyCurrentFontSize(button, 13, QFont::Normal);
    GlobalStyle::getInstance()->applyCurrentStyle(button, style, false);
    return button;
}

void CardParts::buildEnterAndLater(QWidget* page, QPushButton** enterBtn, QPushButton** laterBtn)
{
    *enterBtn = buildButton(page, qtTrId("ID_Enter_Classroom", -1), QStringLiteral("enterClassBtn"),
                            QStringLiteral("QPushButton_IMButton_Style1"));
    *laterBtn = buildButton(page, qtTrId("ID_ClassNotice_Later", -1), QStringLiteral("m_laterBtn"),
                            QStringLiteral("QPushButton_IMButton_Style4"));
}

void CardParts::buildDetailsAndLater(QWidget* parent, QPushButton** detailsBtn, QPushButton** laterBtn)
{
    *detailsBtn = buildButton(parent, qtTrId("ID_MicroCourseNotice_ViewDetails", -1),
                              QStringLiteral("m_viewDetailsBtn"), QStringLiteral("QPushButton_IMButton_Style1"));
    *laterBtn = buildButton(parent, qtTrId("ID_MicroCourseNotice_Later", -1), QStringLiteral("m_laterBtn"),
                            QStringLiteral("QPushButton_IMButton_Style4"));
}

QBoxLayout* CardParts::buildButtonRow(const QList<QPushButton*>& buttons)
{
    auto* row = new QHBoxLayout();
    row->setContentsMargins(0, 0, 6, 0);
    row->setSpacing(0);
    row->addStretch();
    for (int i = 0; i < buttons.size(); ++i) {
        if (i > 0)
            row->addSpacing(10);
        row->addWidget(buttons.at(i));
    }
    return row;
}

void CardParts::setOuterMargins(QBoxLayout* layout)
{
    layout->setContentsMargins(24, 12, 24, 20);
    layout->setSpacing(0);
}

void CardParts::installBody(QWidget* content, QBoxLayout* topRow, const QList<QPushButton*>& buttons)
{
    auto* outer = new QVBoxLayout();
    setOuterMargins(outer);
    outer->addLayout(topRow);
    outer->addSpacing(12);
    outer->addLayout(buildButtonRow(buttons));
    content->setLayout(outer);
}

void CardParts::setHeading(QLabel* headingLabel, const QString& name)
{
    OutsideText::setPlain(
        headingLabel,
        std::get<0>(VyrUtils::elidedTextToPixelLength(headingLabel, name, HeadingWidth, Qt::ElideRight)));
}

QString CardParts::nameSpan(const QWidget* page, const QTextBrowser* contentBrowser, const QString& lessonName)
{
    return NameSpan::quoted(NameSpan::elidedEscaped(lessonName, QFontMetrics(contentBrowser->font())),
                            NameSpan::isChina(page->locale()));
}

void CardParts::loadCover(QLabel* iconLabel, const QWidget* page, quint64 courseId, bool withRatio)
{
    const qreal ratio = VyrUtils::screenDeviceRatio(page);
    QPixmap cover = ImageOp::roundedRectCoursePixmap(VyrEngine::CourseEngine::instance()->coursePixmap(courseId),
                                                     QSizeF(iconLabel->size()), ratio);
    if (withRatio)
        cover.setDevicePixelRatio(ratio);
    iconLabel->setPixmap(cover);
}

void CardParts::reportPush(PopNoticeBaseWidget* owner, bool isCurrentPage, const QString& pushBody)
{
    // A page that isn't shown doesn't report.
    if (!owner || !isCurrentPage)
        return;
    QMap<QString, QVariant> data;
    data.insert(QStringLiteral("push_body"), pushBody);
    data.insert(QStringLiteral("push_scenes"), PushTracking::LessonScene);
    owner->trackPushMessage(data);
}

QMap<QString, QVariant> CardParts::clickData(const QString& pushBody, const QString& pushScenes, bool checkUp)
{
    QMap<QString, QVariant> data;
    data.insert(QStringLiteral("push_body"), pushBody);
    data.insert(QStringLiteral("push_scenes"), pushScenes);
    data.insert(QStringLiteral("check_up"), checkUp);
    return data;
}

bool CardParts::namesCourse(const std::vector<VyrEngine::ClusterID>& ids, quint64 courseId)
{
    return std::any_of(ids.begin(), ids.end(), [courseId](const VyrEngine::ClusterID& id) { return id.id() == courseId; });
}

std::shared_ptr<VyrEngine::ClusterInfo> CardParts::lessonCluster(quint64 courseId)
{
    auto* contacts = VyrEngine::ContactsEngine::instance();
    std::shared_ptr<VyrEngine::ClusterInfo> cluster =
        contacts->clusterInfoById(VyrEngine::ClusterID(courseId, 0), false);
    if (!cluster && !Model::getInstance().isNull()) {
        const QPointer<Model> model = Model::getInstance();
        cluster = contacts->clusterInfoById(
            contacts->clusterIdForClassroom(model->getCourseId(), model->getClassroomId()), false);
    }
    return cluster;
}

std::unique_ptr<WorkCard> CardParts::buildWorkCard(PopNoticeBaseWidget* window, QWidget* content,
                                                   const QMargins& shadow, const QString& title)
{
    fixCardSize(window, shadow);
    window->setWindowTitle(title);

    auto card = std::make_unique<WorkCard>();
    card->icon = new QLabel(window);
    card->icon->setObjectName(QStringLiteral("m_iconLabel"));
    card->icon->setFixedSize(IconSize, IconSize);
    setFirstPicture(card->icon);
    card->heading = buildHiddenHeading(window, title);
    card->browser = buildWorkBrowser(window);
    buildDetailsAndLater(window, &card->details, &card->later);
    installBody(content, buildWorkTopRow(card->icon, card->browser), {card->details, card->later});
    return card;
}

void CardParts::showWork(PopNoticeBaseWidget* window, const WorkCard& card, const WorkSentence& sentence,
                         const QMessageLogger& log)
{
    // Intended: an unknown state closes the window and the rest still runs, with no template.
    if (sentence.key.isEmpty())
        window->close();

    loadCover(card.icon, card.icon, sentence.courseId, false);
    if (!sentence.isReviewSide) {
        card.browser->setText(workingText(window, card.browser, sentence));
        return;
    }
    const std::shared_ptr<VyrEngine::UserInfo> user =
        VyrEngine::ContactsEngine::instance()->userInfoById(sentence.userId);
    QString userName;
    if (user)
        userName = user->displayName();
    else
        log.info() << "can not find user info:" << sentence.userId;
    card.browser->setText(reviewText(window, card.browser, sentence, userName));
}

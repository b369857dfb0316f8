#pragma once

// Private to the library: the parts that the single pop-up cards and the
// class notice pages build alike, and the sizes they share.

#include "VyrNoticeExport.h"

#include <QList>
#include <QMap>
#include <QMargins>
#include <QString>
#include <QVariant>
#include <memory>
#include <vector>

namespace VyrEngine {
class ClusterID;
class ClusterInfo;
}
class PopNoticeBaseWidget;
class QBoxLayout;
class QLabel;
class QMessageLogger;
class QPushButton;
class QTextBrowser;
class QWidget;

// The face of the test and homework pop-ups.
struct WorkCard
{
    QLabel* icon = nullptr;
    QLabel* heading = nullptr;
    QTextBrowser* browser = nullptr;
    QPushButton* details = nullptr;
    QPushButton* later = nullptr;
};

// The cards differ in order and detail (which step loads the cover, whether
// the cover gets its ratio, the buttons); each card calls these pieces in its
// own order, so that the differences stay visible in the card.
class VYRNOTICE_TESTS_EXPORT CardParts
{
public:
    // The card of the lesson, course-work, learning and cluster reminder
    // pop-ups, inside the shadow border.
    static constexpr int CardWidth = 308;
    static constexpr int CardHeight = 164;
    // Side of the cover picture.
    static constexpr int IconSize = 36;
    static constexpr int HeadingWidth = 200;
    static constexpr int HeadingHeight = 19;
    static constexpr int ButtonWidth = 86;
    static constexpr int ButtonHeight = 26;

    // Fixes `window` at a card of `width` by `height` plus the shadow border.
    static void fixCardSize(QWidget* window, const QMargins& shadow, int width = CardWidth, int height = CardHeight);

    // The top row: the picture column, then the heading, spacing 4 and the
    // text browser. `owner` styles the labels; it may be null. `browser` is the
    // text browser to place, made by the caller; when null a plain one is made.
    static QBoxLayout* buildTopRow(QWidget* page, PopNoticeBaseWidget* owner, const QString& heading,
                                   QLabel** iconLabel, QLabel** headingLabel, QTextBrowser** contentBrowser,
                                   QTextBrowser* browser = nullptr);
    // The top row of the label-based cards: `picture` at the top of its column
    // (`pictureTop` pixels down), 12 pixels, then `heading`, 4 pixels and `content`.
    static QBoxLayout* buildPictureAndText(QLabel* picture, int pictureTop, QLabel* heading, QLabel* content);
    // The label-based cards' heading, 19 high, and their wrapped sentence, in the card's styles.
    // The heading shows outside names as plain text.
    static QLabel* buildHeadingLabel(PopNoticeBaseWidget* window, QWidget* parent);
    static QLabel* buildContentLabel(PopNoticeBaseWidget* window, QWidget* parent);
    // The picture shown until the course's cover replaces it, scaled to `icon`.
    static void setFirstPicture(QLabel* icon);

    // An 86 x 26 button with its text, object name and theme style, 13 px.
    static QPushButton* buildButton(QWidget* page, const QString& text, const QString& objectName,
                                    const QString& style);
    // The prepare and start pages' green "enter" and white "later" buttons, in that order.
    static void buildEnterAndLater(QWidget* page, QPushButton** enterBtn, QPushButton** laterBtn);
    // The course-work and learning cards' green "view details" and white
    // "later" buttons. The texts are the micro-course notice's on purpose: one
    // wording for all of them.
    static void buildDetailsAndLater(QWidget* parent, QPushButton** detailsBtn, QPushButton** laterBtn);
    // The buttons at the right, 10 pixels apart, 6 in from the edge.
    static QBoxLayout* buildButtonRow(const QList<QPushButton*>& buttons);
    // The outer layout's margins: 24, 12, 24, 20.
    static void setOuterMargins(QBoxLayout* layout);
    // The body of a card with two buttons: the top row, 12 pixels, the button
    // row, in the outer margins, set on `content`.
    static void installBody(QWidget* content, QBoxLayout* topRow, const QList<QPushButton*>& buttons);

    // `name` cut at the right to the heading's 200 pixels, as the heading.
    static void setHeading(QLabel* headingLabel, const QString& name);
    // The green span of `lessonName` for the page's locale, cut to the browser's 100 pixels and escaped.
    static QString nameSpan(const QWidget* page, const QTextBrowser* contentBrowser, const QString& lessonName);
    // The course's cover, rounded to the label at the page's screen ratio;
    // `withRatio` also gives the picture that ratio.
    static void loadCover(QLabel* iconLabel, const QWidget* page, quint64 courseId, bool withRatio);
    // "PushSend" through the window, when the page is the one shown.
    static void reportPush(PopNoticeBaseWidget* owner, bool isCurrentPage, const QString& pushBody);
    // A card's click payload for "PushClick": its body, its scene and whether the user went on to the details.
    static QMap<QString, QVariant> clickData(const QString& pushBody, const QString& pushScenes, bool checkUp);
    // Whether the deleted clusters `ids` hold the course's cluster.
    static bool namesCourse(const std::vector<VyrEngine::ClusterID>& ids, quint64 courseId);
    // The cluster of a lesson's course; failing that, the cluster of the classroom
    // the user is in, if any. Null when neither is known.
    static std::shared_ptr<VyrEngine::ClusterInfo> lessonCluster(quint64 courseId);

    // The test and homework pop-ups are near twins that differ in their
    // texts, the order of their button actions and what they listen to; their
    // face and their update are built here once.
    //
    // What a course-work card says: the template (empty for a state it doesn't
    // know), the work's title and expiry count, and on the review side who submitted.
    struct WorkSentence
    {
        QString key;
        QString title;
        bool isExpiryKey = false;
        int expireCount = 0;
        bool isReviewSide = false;
        quint64 userId = 0;
        quint64 courseId = 0;
    };

    // Fixes the window's size, sets its title and fills its content panel:
    // the icon column and the text browser, then the two buttons at the right.
    static std::unique_ptr<WorkCard> buildWorkCard(PopNoticeBaseWidget* window, QWidget* content,
                                                   const QMargins& shadow, const QString& title);
    // The update of a course-work card: an empty template closes the window
    // and the rest still runs; the cover, then the sentence. An unknown
    // submitter is logged through `log`, the card's own logger.
    static void showWork(PopNoticeBaseWidget* window, const WorkCard& card, const WorkSentence& sentence,
                         const QMessageLogger& log);
};

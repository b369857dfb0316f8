#pragma once

// Private to the library: what the three class notice pages build and do alike.

#include "VyrNoticeExport.h"

#include <QList>
#include <QString>

class PopNoticeBaseWidget;
class QBoxLayout;
class QLabel;
class QPushButton;
class QTextBrowser;
class QWidget;

// The pages differ in order and detail (which step loads the cover, whether
// the cover gets its ratio, the buttons); each page calls these pieces in its
// own order, so that the differences stay visible in the page.
class VYRNOTICE_TESTS_EXPORT ClassNoticePage
{
public:
    // Side of the cover picture.
    static constexpr int IconSize = 36;
    static constexpr int HeadingWidth = 200;

    // The top row: the picture column, then the heading, spacing 4 and the
    // text browser. `owner` styles the labels; it may be null. `browser` is the
    // text browser to place, made by the caller; when null a plain one is made.
    static QBoxLayout* buildTopRow(QWidget* page, PopNoticeBaseWidget* owner, const QString& heading,
                                   QLabel** iconLabel, QLabel** headingLabel, QTextBrowser** contentBrowser,
                                   QTextBrowser* browser = nullptr);
    // The top row of the label-based cards: `picture` at the top of its column
    // (`pictureTop` pixels down), 12 pixels, then `heading`, 4 pixels and `content`.
    static QBoxLayout* buildPictureAndText(QLabel* picture, int pictureTop, QLabel* heading, QLabel* content);
    // An 86 x 26 button with its text, object name and theme style, 13 px.
    static QPushButton* buildButton(QWidget* page, const QString& text, const QString& objectName,
                                    const QString& style);
    // The prepare and start pages' green "enter" and white "later" buttons, in that order.
    static void buildEnterAndLater(QWidget* page, QPushButton** enterBtn, QPushButton** laterBtn);
    // The buttons at the right, 10 pixels apart, 6 in from the edge.
    static QBoxLayout* buildButtonRow(const QList<QPushButton*>& buttons);
    // The outer layout's margins: 24, 12, 24, 20.
    static void setOuterMargins(QBoxLayout* layout);

    // `name` cut at the right to the heading's 200 pixels, as the heading.
    static void setHeading(QLabel* headingLabel, const QString& name);
    // The green span of `lessonName` for the page's locale, cut to the browser's 100 pixels and escaped.
    static QString nameSpan(const QWidget* page, const QTextBrowser* contentBrowser, const QString& lessonName);
    // The course's cover, rounded to the label at the page's screen ratio;
    // `withRatio` also gives the picture that ratio.
    static void loadCover(QLabel* iconLabel, const QWidget* page, quint64 courseId, bool withRatio);
    // "PushSend" through the window, when the page is the one shown.
    static void reportPush(PopNoticeBaseWidget* owner, bool isCurrentPage, const QString& pushBody);
};

#include "ClassNoticePage_p.h"

#include "CourseEngine.h"
#include "GlobalStyle.h"
#include "ImageOp.h"
#include "NameSpan_p.h"
#include "OutsideText_p.h"
#include "PopNoticeBaseWidget.h"
#include "PushTracking_p.h"
#include "VyrUtils.h"

#include <QBoxLayout>
#include <QFontMetrics>
#include <QLabel>
#include <QPushButton>
#include <QTextBrowser>
#include <QTextDocument>
#include <QTextOption>

QBoxLayout* ClassNoticePage::buildTopRow(QWidget* page, PopNoticeBaseWidget* owner, const QString& heading,
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
    title->setFixedHeight(19);
    // The heading becomes a course's or a cluster's name.
    OutsideText::setPlain(title, heading);

    if (!browser)
        browser = new QTextBrowser(page);
    browser->setObjectName(QStringLiteral("m_contentBrowser"));
    browser->setWordWrapMode(QTextOption::WrapAnywhere);
    QTextOption option = browser->document()->defaultTextOption();
    option.setWrapMode(QTextOption::WrapAnywhere);
    browser->document()->setDefaultTextOption(option);
    browser->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    browser->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // The text starts where the heading does.
    browser->document()->setDocumentMargin(0);
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

QBoxLayout* ClassNoticePage::buildPictureAndText(QLabel* picture, int pictureTop, QLabel* heading, QLabel* content)
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

QPushButton* ClassNoticePage::buildButton(QWidget* page, const QString& text, const QString& objectName,
                                          const QString& style)
{
    auto* button = new QPushButton(page);
    button->setObjectName(objectName);
    button->setFixedSize(86, 26);
    button->setText(text);
    button->setAccessibleName(text);
    button->setCursor(Qt::PointingHandCursor);
    GlobalStyle::getInstance()->applyCurrentFontSize(button, 13, QFont::Normal);
    GlobalStyle::getInstance()->applyCurrentStyle(button, style, false);
    return button;
}

void ClassNoticePage::buildEnterAndLater(QWidget* page, QPushButton** enterBtn, QPushButton** laterBtn)
{
    *enterBtn = buildButton(page, qtTrId("ID_Enter_Classroom", -1), QStringLiteral("enterClassBtn"),
                            QStringLiteral("QPushButton_IMButton_Style1"));
    *laterBtn = buildButton(page, qtTrId("ID_ClassNotice_Later", -1), QStringLiteral("m_laterBtn"),
                            QStringLiteral("QPushButton_IMButton_Style4"));
}

QBoxLayout* ClassNoticePage::buildButtonRow(const QList<QPushButton*>& buttons)
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

void ClassNoticePage::setOuterMargins(QBoxLayout* layout)
{
    layout->setContentsMargins(24, 12, 24, 20);
    layout->setSpacing(0);
}

void ClassNoticePage::setHeading(QLabel* headingLabel, const QString& name)
{
    OutsideText::setPlain(
        headingLabel,
        std::get<0>(VyrUtils::elidedTextToPixelLength(headingLabel, name, HeadingWidth, Qt::ElideRight)));
}

QString ClassNoticePage::nameSpan(const QWidget* page, const QTextBrowser* contentBrowser, const QString& lessonName)
{
    return NameSpan::quoted(NameSpan::elidedEscaped(lessonName, QFontMetrics(contentBrowser->font())),
                            NameSpan::isChina(page->locale()));
}

void ClassNoticePage::loadCover(QLabel* iconLabel, const QWidget* page, quint64 courseId, bool withRatio)
{
    const qreal ratio = VyrUtils::screenDeviceRatio(page);
    QPixmap cover = ImageOp::roundedRectCoursePixmap(VyrEngine::CourseEngine::instance()->coursePixmap(courseId),
                                                     QSizeF(iconLabel->size()), ratio);
    if (withRatio)
        cover.setDevicePixelRatio(ratio);
    iconLabel->setPixmap(cover);
}

void ClassNoticePage::reportPush(PopNoticeBaseWidget* owner, bool isCurrentPage, const QString& pushBody)
{
    // A page that isn't shown doesn't report.
    if (!owner || !isCurrentPage)
        return;
    QMap<QString, QVariant> data;
    data.insert(QStringLiteral("push_body"), pushBody);
    data.insert(QStringLiteral("push_scenes"), PushTracking::LessonScene);
    owner->trackPushMessage(data);
}

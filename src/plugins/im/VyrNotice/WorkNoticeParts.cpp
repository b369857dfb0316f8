#include "WorkNoticeParts_p.h"

#include "ClassNoticePage_p.h"
#include "NameSpan_p.h"
#include "OutsideText_p.h"
#include "PopNoticeBaseWidget.h"

#include <QBoxLayout>
#include <QFontMetrics>
#include <QLocale>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QTextBrowser>
#include <QTextDocument>
#include <QTextOption>

namespace {

QLabel* buildIcon(QWidget* window)
{
    auto* icon = new QLabel(window);
    icon->setObjectName(QStringLiteral("m_iconLabel"));
    icon->setFixedSize(WorkNoticeParts::IconSize, WorkNoticeParts::IconSize);
    // Shown until the course's cover replaces it.
    icon->setPixmap(QPixmap(QStringLiteral(":/im/images/notice/macnotice.png"))
                        .scaled(icon->size(), Qt::IgnoreAspectRatio, Qt::FastTransformation));
    return icon;
}

QLabel* buildHeading(PopNoticeBaseWidget* window, const QString& title)
{
    auto* heading = new QLabel(window);
    heading->setObjectName(QStringLiteral("m_headingLabel"));
    heading->setFixedHeight(19);
    OutsideText::setPlain(heading, title);
    window->applyCurrentStyle(heading, QStringLiteral("QLabel_MessageTitle"), false);
    window->applyCurrentFontSize(heading, 14, QFont::Medium);
    // Intended: the heading is built and hidden, never laid out; the card's title says it.
    heading->hide();
    return heading;
}

QTextBrowser* buildBrowser(PopNoticeBaseWidget* window)
{
    auto* browser = new QTextBrowser(window);
    browser->setObjectName(QStringLiteral("m_contentBrowser"));
    window->applyCurrentStyle(browser, QStringLiteral("QLabel_MessageContent"), false);
    window->applyCurrentFontSize(browser, 13, QFont::Normal);
    QTextOption option = browser->document()->defaultTextOption();
    option.setWrapMode(QTextOption::WrapAnywhere);
    browser->document()->setDefaultTextOption(option);
    browser->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    browser->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // The text starts level with the icon's top.
    browser->document()->setDocumentMargin(0);
    return browser;
}

QBoxLayout* buildTopRow(QLabel* icon, QTextBrowser* browser)
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

} // namespace

WorkNoticeParts::Widgets WorkNoticeParts::build(PopNoticeBaseWidget* window, QWidget* content, const QMargins& shadow,
                                                const QString& title)
{
    window->setFixedSize(CardWidth + shadow.left() + shadow.right(), CardHeight + shadow.top() + shadow.bottom());
    window->setWindowTitle(title);

    Widgets parts;
    parts.icon = buildIcon(window);
    parts.heading = buildHeading(window, title);
    parts.browser = buildBrowser(window);
    // The button texts are the micro-course notice's on purpose: one wording for all course-work notices.
    parts.details = ClassNoticePage::buildButton(window, qtTrId("ID_MicroCourseNotice_ViewDetails", -1),
                                                 QStringLiteral("m_viewDetailsBtn"),
                                                 QStringLiteral("QPushButton_IMButton_Style1"));
    parts.later = ClassNoticePage::buildButton(window, qtTrId("ID_MicroCourseNotice_Later", -1),
                                               QStringLiteral("m_laterBtn"),
                                               QStringLiteral("QPushButton_IMButton_Style4"));

    auto* outer = new QVBoxLayout();
    ClassNoticePage::setOuterMargins(outer);
    outer->addLayout(buildTopRow(parts.icon, parts.browser));
    outer->addSpacing(12);
    outer->addLayout(ClassNoticePage::buildButtonRow({parts.details, parts.later}));
    content->setLayout(outer);
    return parts;
}

QString WorkNoticeParts::workingText(const QWidget* window, const QTextBrowser* browser, const QString& key,
                                     const QString& title, bool isExpiryKey, int expireCount)
{
    // An unknown state leaves no template; the window is already closing.
    if (key.isEmpty())
        return QString();
    const QString titleSpan = NameSpan::quoted(NameSpan::elidedEscaped(title, QFontMetrics(browser->font())),
                                               NameSpan::isChina(window->locale()));
    QString text = qtTrId(key.toUtf8().constData(), -1).arg(titleSpan);
    if (isExpiryKey)
        text = text.arg(expireCount);
    return text;
}

QString WorkNoticeParts::reviewText(const QWidget* window, const QTextBrowser* browser, const QString& key,
                                    const QString& userName, const QString& title)
{
    if (key.isEmpty())
        return QString();
    const QFontMetrics metrics(browser->font());
    const QString userSpan = NameSpan::plain(NameSpan::elidedEscaped(userName, metrics));
    const QString titleSpan =
        NameSpan::quoted(NameSpan::elidedEscaped(title, metrics), NameSpan::isChina(window->locale()));
    return qtTrId(key.toUtf8().constData(), -1).arg(userSpan, titleSpan);
}

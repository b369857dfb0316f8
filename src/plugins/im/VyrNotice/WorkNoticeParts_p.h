#pragma once

// Private to the library: what the test and the homework pop-ups build alike.

#include "VyrNoticeExport.h"

#include <QMargins>
#include <QString>

class PopNoticeBaseWidget;
class QLabel;
class QPushButton;
class QTextBrowser;
class QWidget;

// The two windows are near twins that differ in their texts, the order of
// their button actions and what they listen to; the face and the sentence
// are built here once.
class VYRNOTICE_TESTS_EXPORT WorkNoticeParts
{
public:
    static constexpr int CardWidth = 308;
    static constexpr int CardHeight = 164;
    static constexpr int IconSize = 36;

    struct Widgets
    {
        QLabel* icon = nullptr;
        QLabel* heading = nullptr;
        QTextBrowser* browser = nullptr;
        QPushButton* details = nullptr;
        QPushButton* later = nullptr;
    };

    // Fixes the window's size, sets its title and fills its content panel:
    // the icon column and the text browser, then the two buttons at the right.
    static Widgets build(PopNoticeBaseWidget* window, QWidget* content, const QMargins& shadow,
                         const QString& title);

    // The working side's sentence: `key`'s template with the quoted title;
    // an expiry template also gets the count.
    static QString workingText(const QWidget* window, const QTextBrowser* browser, const QString& key,
                               const QString& title, bool isExpiryKey, int expireCount);
    // The review side's sentence: the user's name, then the quoted title.
    static QString reviewText(const QWidget* window, const QTextBrowser* browser, const QString& key,
                              const QString& userName, const QString& title);
};

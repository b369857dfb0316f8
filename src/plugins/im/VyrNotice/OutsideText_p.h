#pragma once

// Private to the library: how a text that other people or a server wrote is shown.

#include "VyrNoticeExport.h"

#include <QString>

class QLabel;

// Names, titles and messages come from other people and from servers. A label
// that shows one takes it as plain text, so no markup renders and nothing is
// loaded because of it. Names inside the library's own markup are escaped by
// NameSpan instead.
class VYRNOTICE_TESTS_EXPORT OutsideText
{
public:
    // `label` shows whatever it is given as typed, from now on.
    static void makePlain(QLabel* label);
    // `label` made plain, then given `text`.
    static void setPlain(QLabel* label, const QString& text);
    // For a widget of the client that guesses the format and can't be told
    // (its message boxes): `text` as it is when it would be taken for plain
    // text; otherwise markup that shows exactly `text`, with no tag of its own.
    static QString forAutoFormat(const QString& text);
};

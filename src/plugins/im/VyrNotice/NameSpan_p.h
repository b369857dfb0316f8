#pragma once

// Private to the library: the coloured span that a name stands in inside a notice text.

#include "VyrNoticeExport.h"

#include <QString>

class QFontMetrics;
class QLocale;

// Names go into a translated template as "#009265" green spans. Which form a
// text uses is decided by its caller; the forms exist once, here.
class VYRNOTICE_TESTS_EXPORT NameSpan
{
public:
    // Width that names are elided to, in pixels of the text's font.
    static constexpr int NameWidth = 100;

    // The quoted form, by country: "&nbsp;%1" for China, "&quot;%1&quot;" for any other.
    static QString quoted(const QString& markup, bool isChinaLocale);
    // The padded form, the same for every country: "&nbsp;&nbsp;&quot;%1&quot;&nbsp;&nbsp;".
    static QString padded(const QString& markup);
    // The bare form: the name alone in the colour.
    static QString plain(const QString& markup);

    // `name` cut at the right to `width` pixels of `metrics`, then escaped for rich text.
    static QString elidedEscaped(const QString& name, const QFontMetrics& metrics, int width = NameWidth);
    // True when the locale's country selects the Chinese quoted form.
    static bool isChina(const QLocale& locale);
};

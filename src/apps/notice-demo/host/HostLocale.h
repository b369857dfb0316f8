#pragma once

#include <QLocale>
#include <QString>

// The host's language: the notice library's translator and the default
// locale that the windows read when they are made. Call before any window exists.
class HostLocale
{
public:
    // Installs the translator for `name` ("en", "zh_CN") and makes it the
    // default locale; a locale without translations falls back to English,
    // with one log line. Returns the locale now in use.
    static QLocale apply(const QString& name);
};

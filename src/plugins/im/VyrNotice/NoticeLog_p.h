#pragma once

#include <QLoggingCategory>

// Private to the library: the one logging category of every line the library
// writes, "vyr.notice", so that a host can filter the library's lines by it
// (QLoggingCategory::setFilterRules("vyr.notice.info=false"), QT_LOGGING_RULES).
// Every level is on by default, as for Qt's default category: the lines keep
// their levels (info, and the few debug and warning lines), their file, line
// and function.
Q_DECLARE_LOGGING_CATEGORY(lcVyrNotice)

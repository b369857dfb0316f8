#pragma once

// Private to the library: whether a server's domain may stand as the host of an address.

#include "VyrNoticeExport.h"

#include <QString>

// A bare host name: labels of letters, digits and hyphens joined by dots,
// internationalised names allowed (checked in their ASCII form). No scheme,
// port, user, path, query, fragment or blank.
class VYRNOTICE_TESTS_EXPORT HostName
{
public:
    static constexpr int MaxLength = 253;
    static constexpr int MaxLabelLength = 63;

    // True when `domain` is a bare host name; otherwise false, and `reason`
    // (when given) says what is wrong in a few words.
    static bool isBare(const QString& domain, QString* reason = nullptr);
};

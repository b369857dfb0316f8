// The gathered cluster notice row's text: any notice text is fitted without
// a crash or a sanitizer report, into at most two lines.
#include "ClusterNoticeText_p.h"
#include "FuzzSupport.h"

#include <QStringList>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    VyrFuzz::initGui(argc, argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString content = VyrFuzz::text(data, size);

    const QString row = ClusterNoticeText::displayContent(content);
    VyrFuzz::require(row.split(QLatin1Char('\n')).size() <= ClusterNoticeText::MaxLines,
                     "the row's text has more than two lines", content);

    const QString fitted = ClusterNoticeText::fit(content);
    VyrFuzz::require(fitted.split(QLatin1Char('\n')).size() <= ClusterNoticeText::MaxLines,
                     "the fitted text has more than two lines", content);
    return 0;
}

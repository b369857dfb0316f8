// The cluster notice reminder's text: any sender and message are fitted
// without a crash or a sanitizer report, into at most two lines. The input's
// first ": " divides the sender's name from the message, as the label shows them.
#include "FuzzSupport.h"
#include "NoticeRemindText_p.h"

#include <QStringList>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    VyrFuzz::initGui(argc, argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString input = VyrFuzz::text(data, size);
    const int colon = input.indexOf(QStringLiteral(": "));
    const QString nickname = colon < 0 ? QString() : input.left(colon);
    const QString message = colon < 0 ? input : input.mid(colon + 2);

    const QString label = NoticeRemindText::compose(nickname, message);
    VyrFuzz::require(label.split(QLatin1Char('\n')).size() <= NoticeRemindText::MaxLines,
                     "the label has more than two lines", input);

    const QString fitted = NoticeRemindText::fit(input);
    VyrFuzz::require(fitted.split(QLatin1Char('\n')).size() <= NoticeRemindText::MaxLines,
                     "the fitted text has more than two lines", input);
    return 0;
}

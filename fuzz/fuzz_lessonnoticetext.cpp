// The lesson notice texts: any lesson name, start time and clock fill the
// templates without a crash or a sanitizer report; the name stands in the
// text exactly as given, and the times read as the row promises.
//
// The input's last bytes choose the case (from the end, as
// FuzzedDataProvider takes numbers), the rest is the name.
#include "FuzzSupport.h"
#include "LessonNoticeText_p.h"

#include <fuzzer/FuzzedDataProvider.h>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    VyrFuzz::initGui(argc, argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzedDataProvider provider(data, size);
    const bool isAhead = provider.ConsumeBool();
    const quint32 start = provider.ConsumeIntegral<quint32>();
    // The engine's clock: seconds since the epoch within some thousand years
    // either side, never a value whose difference to a start overflows.
    const qint64 now = provider.ConsumeIntegralInRange<qint64>(-(qint64(1) << 40), qint64(1) << 40);
    const std::vector<uint8_t> rest = provider.ConsumeRemainingBytes<uint8_t>();
    const QString name = VyrFuzz::text(rest.data(), rest.size());

    const QString body = LessonNoticeText::body(isAhead, name, start, now);
    VyrFuzz::require(body.contains(name), "the name is not in the text as given", name);

    const LessonNoticeText::Ahead ahead = LessonNoticeText::ahead(qint64(start), now);
    const qint64 secondsLeft = qint64(start) - now;
    if (secondsLeft <= LessonNoticeText::MinutesThreshold)
        VyrFuzz::require(ahead.timeText == QString::number(secondsLeft / 60), "the minutes left are wrong",
                         ahead.timeText);
    else
        VyrFuzz::require(ahead.timeText.size() == 16, "the start time is not \"yyyy-MM-dd hh:mm\"", ahead.timeText);
    return 0;
}

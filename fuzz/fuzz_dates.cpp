// The date parser: whatever it accepts is a real calendar day whose stored form reads
// back as the same day.

#include <cstdlib>

#include "controls/vb_date.h"
#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto text = brenlow::fuzz::text_of(data, size);
    for (const auto& d : {brenlow::Date::parse(text), brenlow::Date::parse_packed(text)}) {
        if (!d) continue;
        if (!d->valid()) std::abort();
        const auto again = brenlow::Date::parse(d->text());
        if (!again || again->year != d->year || again->month != d->month || again->day != d->day)
            std::abort();
        if (brenlow::Date::from_serial(d->serial()).text() != d->text()) std::abort();
        (void)d->format("DD/MM/YY");
    }
    return 0;
}

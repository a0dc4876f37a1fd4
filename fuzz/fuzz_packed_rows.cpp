// The packed sub-lists (ShiftDet, DetESA) and the options rows (NewFAMI, OthOpts):
// reading never fails, and what is written reads back the same.

#include <cstdlib>

#include "fuzz_support.h"
#include "register/register_options.h"
#include "store/register_store.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto text = brenlow::fuzz::text_of(data, size);
    for (const char* sep : {",", "\xC2\xA6"}) {
        const auto rows = brenlow::store::unpack_rows(text, sep);
        const auto packed = brenlow::store::pack_rows(rows, sep);
        if (brenlow::store::pack_rows(brenlow::store::unpack_rows(packed, sep), sep) != packed) std::abort();
    }
    const auto options = brenlow::reg::RegisterOptions::parse(text);
    if (brenlow::reg::RegisterOptions::parse(options.compose()).compose() != options.compose()) std::abort();
    (void)options.rem_life_mode();
    const auto opening = brenlow::reg::OpeningOpts::parse(text);
    if (brenlow::reg::OpeningOpts::parse(opening.compose()).compose() != opening.compose()) std::abort();
    const auto addition = brenlow::reg::AdditionOpts::parse(text);
    if (brenlow::reg::AdditionOpts::parse(addition.compose()).compose() != addition.compose()) std::abort();
    return 0;
}

// "#id;text|..." lists: parsing never fails, and what is composed parses back to the
// same items.

#include <cstdlib>

#include "controls/id_text_list.h"
#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto list = brenlow::IdTextList::parse(brenlow::fuzz::text_of(data, size));
    const auto composed = list.compose();
    if (brenlow::IdTextList::parse(composed).compose() != composed) std::abort();
    for (const auto& item : list.items()) (void)list.index_of_id(item.id);
    return 0;
}

// The .xls reader: the container, the record walk, this program's own reader and
// freexl behind them. Any bytes are read within the limits or refused with a reason.

#include "exchange/xls_workbook.h"
#include "fuzz_support.h"
#include "fuzz_workbook_support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // In memory first: this program's reader says either a workbook, damage, or neither.
    std::string damage;
    const auto book = brenlow::exchange::xls::read(brenlow::fuzz::text_of(data, size), damage);
    if (book && !damage.empty()) std::abort();
    brenlow::fuzz::read_as_workbook(data, size, ".xls");
    return 0;
}

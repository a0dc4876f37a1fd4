// The .xlsx reader: the zip (minizip), its parts streamed through expat, the cells
// gathered within the limits. Any bytes are read within them or refused with a reason.

#include "fuzz_workbook_support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    brenlow::fuzz::read_as_workbook(data, size, ".xlsx");
    return 0;
}

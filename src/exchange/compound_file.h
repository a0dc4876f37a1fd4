#pragma once
// The container of an Excel 97-2003 workbook (a Compound File: sectors chained through
// an allocation table) opened with nothing it says about itself trusted: every chain is
// followed once, inside the file, and a stream is no longer than the file that holds it.

#include <optional>
#include <string>
#include <string_view>

namespace brenlow::exchange::xls {

// The workbook stream ("Workbook", or "Book" in older files) of the file's bytes.
// nullopt when the bytes are no Compound File (`damage` empty) or when the container is
// damaged: `damage` then says how, in words for the person.
std::optional<std::string> workbook_stream(std::string_view file, std::string& damage);

}  // namespace brenlow::exchange::xls

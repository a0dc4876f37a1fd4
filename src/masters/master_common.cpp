#include "masters/master_common.h"

#include <cstdlib>

#include "controls/vb_date.h"

namespace brenlow::masters {

int open_year(const TarrowBase::ClsMain& base) {
    const auto last = Date::parse(base.SecondDate());
    return last ? last->year : 0;
}

double field_number(std::string_view text) {
    const std::string s = trimmed(text);
    if (s.empty()) return 0;
    return std::strtod(s.c_str(), nullptr);
}

std::string trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    const auto last = text.find_last_not_of(' ');
    return std::string(text.substr(first, last - first + 1));
}

}  // namespace brenlow::masters

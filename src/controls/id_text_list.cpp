#include "controls/id_text_list.h"

namespace brenlow {

IdTextList IdTextList::parse(std::string_view list) {
    IdTextList out;
    if (list.empty()) return out;
    std::size_t start = 0;
    while (start <= list.size()) {
        const std::size_t bar = list.find('|', start);
        const std::string_view item =
            list.substr(start, bar == std::string_view::npos ? std::string_view::npos : bar - start);
        if (!item.empty() && item.front() == '#') {
            const std::size_t semicolon = item.find(';');
            if (semicolon == std::string_view::npos) {
                out.add(std::string(item.substr(1)), std::string{});
            } else {
                out.add(std::string(item.substr(1, semicolon - 1)), std::string(item.substr(semicolon + 1)));
            }
        } else if (!item.empty()) {
            out.add(std::string(item), std::string(item));
        }
        if (bar == std::string_view::npos) break;
        start = bar + 1;
    }
    return out;
}

IdTextList IdTextList::block_list(const std::vector<IdText>& blocks) {
    IdTextList out;
    out.add("0", " ");
    out.add("-1", "N/A");
    for (const auto& b : blocks) out.items_.push_back(b);
    return out;
}

std::string IdTextList::compose() const {
    std::string out;
    for (std::size_t i = 0; i < items_.size(); ++i) {
        if (i > 0) out.push_back('|');
        out += "#" + items_[i].id + ";" + items_[i].text;
    }
    return out;
}

std::optional<std::string> IdTextList::text_of(std::string_view id) const {
    const int i = index_of_id(id);
    if (i < 0) return std::nullopt;
    return items_[i].text;
}

std::optional<std::string> IdTextList::id_of(std::string_view text) const {
    for (const auto& item : items_) {
        if (item.text == text) return item.id;
    }
    return std::nullopt;
}

int IdTextList::index_of_id(std::string_view id) const {
    for (std::size_t i = 0; i < items_.size(); ++i) {
        if (items_[i].id == id) return static_cast<int>(i);
    }
    return -1;
}

}  // namespace brenlow

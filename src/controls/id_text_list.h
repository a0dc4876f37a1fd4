#pragma once
// The vocabulary of combo boxes and grid columns: "#" id ";" text pairs joined by
// "|", as in "#1;WRITTEN DOWN VALUE|#2;STRAIGHT LINE METHOD". Ids are text: "4.1"
// names a sub-entry, "-1" is "N/A" in the block lists.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brenlow {

struct IdText {
    std::string id;
    std::string text;
    friend bool operator==(const IdText&, const IdText&) = default;
};

class IdTextList {
public:
    IdTextList() = default;
    explicit IdTextList(std::vector<IdText> items) : items_(std::move(items)) {}

    // Reads a list. An item without the leading "#" is a plain text whose id is the
    // text itself, as in a list of words offered without ids.
    static IdTextList parse(std::string_view list);
    // The list of a block combo: "#0; |#-1;N/A" followed by the given entries.
    static IdTextList block_list(const std::vector<IdText>& blocks);

    std::string compose() const;

    void add(std::string id, std::string text) { items_.push_back({std::move(id), std::move(text)}); }
    const std::vector<IdText>& items() const { return items_; }
    std::size_t size() const { return items_.size(); }
    bool empty() const { return items_.empty(); }

    // First entry with this id / this text (texts compare exactly); nullopt when absent.
    std::optional<std::string> text_of(std::string_view id) const;
    std::optional<std::string> id_of(std::string_view text) const;
    // Position in the list, or -1.
    int index_of_id(std::string_view id) const;

private:
    std::vector<IdText> items_;
};

}  // namespace brenlow

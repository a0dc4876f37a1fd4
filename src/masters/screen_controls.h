#pragma once
// The small controls of the master screens besides grids and entry fields: a
// drop-down list of id-and-text pairs, a command button, a caption. Each only
// holds the state a view draws; the screens decide what it is.

#include <string>
#include <string_view>

#include "controls/id_text_list.h"

namespace brenlow::masters {

// A drop-down list. ListIndex -1 is "nothing chosen", which the screens show as
// "(Select)".
struct ComboBox {
    static constexpr const char* kNothingChosen = "(Select)";

    IdTextList list;
    int ListIndex = -1;
    bool Enabled = true;
    bool Visible = true;

    // A new list keeps the chosen id when the new list still has it.
    void set_list(IdTextList items) {
        const std::string chosen = id();
        list = std::move(items);
        ListIndex = chosen.empty() ? -1 : list.index_of_id(chosen);
    }
    // The id of the chosen entry; "" when nothing is chosen.
    std::string id() const { return ListIndex < 0 ? std::string() : list.items().at(ListIndex).id; }
    std::string Text() const { return ListIndex < 0 ? std::string(kNothingChosen) : list.items().at(ListIndex).text; }
    // Chooses the entry with this id; nothing is chosen when the list lacks it.
    bool select_id(std::string_view wanted) {
        ListIndex = list.index_of_id(wanted);
        return ListIndex >= 0;
    }
};

struct CommandButton {
    bool Enabled = true;
};

struct Label {
    std::string Caption;
};

}  // namespace brenlow::masters

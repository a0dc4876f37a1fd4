#pragma once
// The small controls of the screens besides grids and entry fields: a drop-down list
// of id-and-text pairs, a tick box, a command button, a caption. Each only holds the
// state a view draws; the screens decide what it is.

#include <string>
#include <string_view>

#include "controls/id_text_list.h"

namespace brenlow {

// A drop-down list. ListIndex -1 is "nothing chosen", which the views show as
// kNothingChosen.
struct ComboBox {
    static constexpr const char* kNothingChosen = "(Select)";

    IdTextList List;
    int ListIndex = -1;
    bool Enabled = true;
    bool Visible = true;

    // The id and the text of the chosen entry; "" when nothing is chosen.
    std::string Id() const {
        return ListIndex < 0 || ListIndex >= static_cast<int>(List.size())
                   ? std::string()
                   : List.items()[static_cast<std::size_t>(ListIndex)].id;
    }
    std::string Text() const {
        return ListIndex < 0 || ListIndex >= static_cast<int>(List.size())
                   ? std::string()
                   : List.items()[static_cast<std::size_t>(ListIndex)].text;
    }
    // Chooses the entry with this id; nothing is chosen when the list lacks it.
    bool select_id(std::string_view wanted) {
        ListIndex = List.index_of_id(wanted);
        return ListIndex >= 0;
    }
    // A new list keeps the chosen id when the new list still has it.
    void set_list(IdTextList items) {
        const std::string chosen = Id();
        List = std::move(items);
        ListIndex = chosen.empty() ? -1 : List.index_of_id(chosen);
    }
};

// A tick box: its value, caption and whether it can be clicked.
struct CheckBox {
    bool Value = false;
    std::string Caption;
    bool Enabled = true;
};

struct CommandButton {
    bool Enabled = true;
};

struct Label {
    std::string Caption;
};

}  // namespace brenlow

#include "ui/masters_binding.h"

namespace brenlow::ui::masters {

void MasterWindow::show_combo(QComboBox* box, const brenlow::ComboBox& combo) {
    box->setPlaceholderText(brenlow::ComboBox::kNothingChosen);
    ScreenWindow::show_combo(box, combo);
}

}  // namespace brenlow::ui::masters

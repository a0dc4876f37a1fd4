#pragma once
// The notes to the accounts as the desktop's Final Accounts menu prints them: worked
// out from the open client's year and shown in the print preview, from which the
// person saves the PDF or the workbook where they choose. Nothing is posted.

#include "frame/component.h"
#include "suite/base_services.h"

namespace brenlow {
class Ui;
}

namespace brenlow::tarrow {

// The note on property, plant and equipment of the open year.
void show_ppe_note(suite::BaseServices& base, frame::Component& component, Ui& ui);
// The deferred tax on depreciation at the practice's usual rate for the client (asked
// for when the practice has none for its kind).
void show_deferred_tax(suite::BaseServices& base, frame::Component& component, Ui& ui);

}  // namespace brenlow::tarrow

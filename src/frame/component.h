#pragma once
// The loaded component: the sibling objects created at start-up and the
// process-wide values every screen reads (FixOnly, SchDef, the error context, the
// masters-changed flag). One per loaded component; screens get it when made.

#include <cstdint>
#include <memory>

#include "controls/ui_port.h"
#include "frame/error_log.h"
#include "suite/catalogue.h"
#include "suite/halvbase.h"
#include "suite/kestbase.h"
#include "suite/report.h"
#include "suite/tarrow_base.h"

namespace brenlow::frame {

// Booleans crossing the public interface: true is -1 (all sixteen bits set).
using VbBool = std::int16_t;
constexpr VbBool vbTrue = -1;
constexpr VbBool vbFalse = 0;
inline bool vb_is_true(VbBool b) {
    return static_cast<std::uint16_t>(b) > 65534;
}

struct Component {
    std::shared_ptr<TarrowBase::ClsMain> base;  // base services object
    std::shared_ptr<Kestbase::Forms> forms;     // base forms object
    std::shared_ptr<Ostikreport::ClsMain> report;
    std::shared_ptr<Halvbase1::Forms> it1;
    std::shared_ptr<Halvbase2::Forms> it2;

    VbBool FixOnly = vbFalse;
    VbBool SchDef = vbFalse;
    // Set when a master list changes; screens that list masters reload and clear it.
    bool masters_changed = false;

    ErrorLog log;
};

// The component's message for an incompatible base services object.
inline constexpr const char* kIncompatibleBase =
    "File [TarrowBase.dll] is not compatible. Please update the latest software properly.";

// Start-up: the base services object first, its compatibility check (the message
// above, then carry on), then the base forms, report and the two income-tax
// objects, in that order. A failure to create one of those four reaches the caller.
void startup(Component& component, const suite::Catalogue& catalogue, Ui& ui);

}  // namespace brenlow::frame

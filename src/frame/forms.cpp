#include "frame/forms.h"

namespace brenlow::frame {

Forms::Forms(const suite::Catalogue& catalogue, Ui& ui, ScreenMakers makers) : makers_(std::move(makers)) {
    startup(component_, catalogue, ui);
}

std::string Forms::MyDllVersion() const {
    return "2.26.4";
}

// Every operation runs with errors suppressed: a failure leaves the result empty.

std::shared_ptr<Screen> Forms::ObjFormat(VbBool& FixOnly, VbBool& SchDef) {
    try {
        if (vb_is_true(FixOnly)) component_.forms->GetSetup();
        component_.FixOnly = FixOnly;
        component_.SchDef = SchDef;
        if (!schedules_ && makers_.formatsch) schedules_ = makers_.formatsch(component_);
        return schedules_;
    } catch (...) {
        return nullptr;
    }
}

std::shared_ptr<Screen> Forms::ObjCapital() {
    try {
        if (!capital_ && makers_.capital) capital_ = makers_.capital(component_);
        return capital_;
    } catch (...) {
        return nullptr;
    }
}

std::shared_ptr<Screen> Forms::ObjNewFATR() {
    try {
        return makers_.frmNewFATR ? makers_.frmNewFATR(component_) : nullptr;
    } catch (...) {
        return nullptr;
    }
}

std::shared_ptr<Ostikreport::ClsMain> Forms::oClsRep() {
    return component_.report;
}

}  // namespace brenlow::frame

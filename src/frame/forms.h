#pragma once
// Forms — the component's one public class. The host creates it, and it starts the
// component and hands out screens: the schedules screen and the capital screen are
// made once and reused, a register screen is new on every call.

#include <functional>
#include <memory>
#include <string>

#include "frame/component.h"
#include "frame/screen.h"

namespace brenlow::frame {

// How the screens are made; the host fills in the ones it has. A missing maker
// means the screen is not available.
struct ScreenMakers {
    std::function<std::shared_ptr<Screen>(Component&)> formatsch;
    std::function<std::shared_ptr<Screen>(Component&)> capital;
    std::function<std::shared_ptr<Screen>(Component&)> frmNewFATR;
};

class Forms {
public:
    // Runs the start-up; errors of start-up reach the caller (the host loading us).
    Forms(const suite::Catalogue& catalogue, Ui& ui, ScreenMakers makers);

    std::string MyDllVersion() const;
    std::shared_ptr<Screen> ObjFormat(VbBool& FixOnly, VbBool& SchDef);
    std::shared_ptr<Screen> ObjCapital();
    std::shared_ptr<Screen> ObjNewFATR();
    std::shared_ptr<Ostikreport::ClsMain> oClsRep();

    Component& component() { return component_; }

private:
    Component component_;
    ScreenMakers makers_;
    std::shared_ptr<Screen> schedules_;
    std::shared_ptr<Screen> capital_;
};

}  // namespace brenlow::frame

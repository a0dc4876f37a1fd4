#include "frame/component.h"

namespace brenlow::frame {

void startup(Component& c, const suite::Catalogue& catalogue, Ui& ui) {
    c.base = catalogue.create<TarrowBase::ClsMain>("TarrowBase.ClsMain");
    c.log.set_exe_path(c.base->ExePath());
    bool compatible = true;
    try {
        compatible = c.base->CheckDllsVersion(true);
    } catch (...) {
        // The check runs with errors suppressed: a failing check is not a verdict.
    }
    if (!compatible) ui.message(kIncompatibleBase, MsgIcon::critical);

    c.forms = catalogue.create<Kestbase::Forms>("Kestbase.Forms");
    c.report = catalogue.create<Ostikreport::ClsMain>("Ostikreport.ClsMain");
    c.it1 = catalogue.create<Halvbase1::Forms>("Halvbase1.Forms");
    c.it2 = catalogue.create<Halvbase2::Forms>("Halvbase2.Forms");
}

}  // namespace brenlow::frame

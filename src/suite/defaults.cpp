#include "suite/defaults.h"

#include <algorithm>

#include "controls/vb_date.h"

namespace brenlow::suite {

void BaseForms::GetSetup() {
    ++loads_;
    vars_.clear();
    if (base_->Temp_Code().empty()) return;
    for (const char* key : {"SEPDEP", "ADDDEP", "STOPDEP", "BADEP"}) {
        vars_[key] = base_->GetFASetupVars(key, base_->Temp_Code(), base_->SecondDate());
    }
}

std::string BaseForms::setupvars(std::string_view name) {
    const auto it = vars_.find(name);
    if (it != vars_.end()) return it->second;
    if (base_->Temp_Code().empty()) return {};
    return base_->GetFASetupVars(name, base_->Temp_Code(), base_->SecondDate());
}

void BaseForms::SetSetupVars(std::string_view name, std::string_view value) {
    vars_[std::string(name)] = std::string(value);
    if (!base_->Temp_Code().empty())
        base_->SetMiscOthInf(std::string("FASETUP:") + std::string(name), value, base_->SecondDate(),
                             base_->Temp_Code(), "fixed-asset set-up");
}

int BaseForms::comp_dt(std::string_view a, std::string_view b) const {
    const auto da = Date::parse(a), db = Date::parse(b);
    if (!da || !db) return 0;
    return *da < *db ? -1 : (*db < *da ? 1 : 0);
}

bool BaseForms::Check_AdDt(std::string_view date) const {
    const auto d = Date::parse(date);
    if (!d || base_->year() == 0) return false;
    return fy_first(base_->year()) <= *d && *d <= fy_last(base_->year());
}

long BaseForms::deter(std::string_view put_date, std::string_view year_end, int what) const {
    const auto put = Date::parse(put_date), end = Date::parse(year_end);
    if (!put || !end) return 0;
    const long used = days_between(*put, *end) + 1;  // both days count
    return what == 2 ? (used >= 180 ? 1 : 0) : used;
}

void ReportObject::createtable(std::string_view name, int columns) {
    table_ = std::string(name);
    doc_ = {};
    doc_.columns.resize(static_cast<std::size_t>(std::max(0, columns)));
}

void ReportObject::RowBackForeColorMain(int row, long /*back_color*/, long fore_color) {
    // The printed report knows only plain and emphasised rows: a coloured text marks
    // a row as emphasised.
    if (row < 0) return;
    const auto r = static_cast<std::size_t>(row);
    if (doc_.bold_rows.size() <= r) doc_.bold_rows.resize(r + 1, false);
    doc_.bold_rows[r] = fore_color != 0;
}

void ReportObject::showreport() {
    if (viewer_) viewer_(doc_);
}

void register_defaults(Catalogue& catalogue, const SuiteSetup& setup) {
    struct Shared {
        SuiteSetup setup;
        std::shared_ptr<BaseServices> base;
        std::shared_ptr<BaseServices> get() {
            if (!base) {
                auto db = store::open_database(setup.database_url.empty() ? store::default_database_url()
                                                                          : setup.database_url);
                base = std::make_shared<BaseServices>(std::move(db), setup.exe_path, setup.data_dir);
            }
            return base;
        }
    };
    auto shared = std::make_shared<Shared>();
    shared->setup = setup;
    catalogue.add_type<TarrowBase::ClsMain>("TarrowBase.ClsMain", [shared] { return shared->get(); });
    catalogue.add_type<Kestbase::Forms>("Kestbase.Forms",
                                        [shared] { return std::make_shared<BaseForms>(shared->get()); });
    catalogue.add_type<Ostikreport::ClsMain>("Ostikreport.ClsMain",
                                             [] { return std::make_shared<ReportObject>(); });
    catalogue.add_type<Halvbase1::Forms>("Halvbase1.Forms",
                                         [] { return std::make_shared<IncomeTaxForms1>(); });
    catalogue.add_type<Halvbase2::Forms>("Halvbase2.Forms",
                                         [] { return std::make_shared<IncomeTaxForms2>(); });
}

}  // namespace brenlow::suite

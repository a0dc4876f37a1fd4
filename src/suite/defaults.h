#pragma once
// The suite's default sibling components and their registration in a catalogue.

#include <map>
#include <memory>
#include <string>

#include "suite/base_services.h"
#include "suite/catalogue.h"
#include "suite/halvbase.h"
#include "suite/kestbase.h"
#include "suite/report.h"

namespace brenlow::suite {

// Kestbase.Forms over the base services: set-up variables of the open client and
// year, and the date checks of the register.
class BaseForms : public Kestbase::Forms {
public:
    explicit BaseForms(std::shared_ptr<BaseServices> base) : base_(std::move(base)) {}
    void GetSetup() override;
    std::string setupvars(std::string_view name) override;
    void SetSetupVars(std::string_view name, std::string_view value) override;
    int comp_dt(std::string_view a, std::string_view b) const override;
    bool Check_AdDt(std::string_view date) const override;
    long deter(std::string_view put_date, std::string_view year_end, int what) const override;
    int setup_loads() const override { return loads_; }

private:
    std::shared_ptr<BaseServices> base_;
    std::map<std::string, std::string, std::less<>> vars_;
    int loads_ = 0;
};

class ReportObject : public Ostikreport::ClsMain {
public:
    void WriteToReport(const Ostikreport::ReportDocument& doc) override { doc_ = doc; }
    void createtable(std::string_view name, int columns) override;
    void RowBackForeColorMain(int row, long back_color, long fore_color) override;
    void PrintText(std::string_view text) override { doc_.notes.emplace_back(text); }
    void showreport() override;
    const Ostikreport::ReportDocument& prepared() const override { return doc_; }
    void set_viewer(Viewer viewer) override { viewer_ = std::move(viewer); }

private:
    Ostikreport::ReportDocument doc_;
    std::string table_;
    Viewer viewer_;
};

class IncomeTaxForms1 : public Halvbase1::Forms {
public:
    std::string Name() const override { return "Halvbase1.Forms"; }
};
class IncomeTaxForms2 : public Halvbase2::Forms {
public:
    std::string Name() const override { return "Halvbase2.Forms"; }
};

// What the default components need to start: the database and where the program
// and its reference data live.
struct SuiteSetup {
    std::string database_url;  // empty: the embedded default
    std::string exe_path;
    std::string data_dir;
};

// Registers the five start-up components under their class identifiers. The base
// services are created once (opening the database) and shared by the others.
void register_defaults(Catalogue& catalogue, const SuiteSetup& setup);

}  // namespace brenlow::suite

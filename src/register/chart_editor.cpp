#include "register/chart_editor.h"

#include "controls/number_format.h"
#include "controls/vb_date.h"
#include "register/calculation.h"
#include "register/chart_report.h"
#include "register/hand_edited_chart.h"
#include "register/register_entry_math.h"
#include "store/chart_store.h"
#include "store/client_store.h"

namespace brenlow::reg {
namespace {

constexpr const char* kModule = "frmDeprChartEdit";
using Row = depreciation::ChartRow;

struct Column {
    const char* heading;
    double Row::*member;
};

std::vector<Column> columns_of(depreciation::ChartEditor layout) {
    std::vector<Column> c = {{"WDV", &Row::Wdv}};
    if (layout == depreciation::ChartEditor::Years2018And2019)
        c.push_back({"WDV at Half Rate", &Row::WdvOpHR});
    const std::vector<Column> rest = {{"Addition (180 Days or More)", &Row::Add1},
                                      {"Deduction", &Row::Cons1},
                                      {"Full Rate Amount", &Row::FullAmt},
                                      {"Addition (Less than 180 Days)", &Row::Add2},
                                      {"Deduction", &Row::Cons2},
                                      {"Half Rate Amount", &Row::HalfAmt},
                                      {"Normal (Full)", &Row::DeprF},
                                      {"Normal (Half)", &Row::DeprH},
                                      {"Additional (Full)", &Row::ADeprF},
                                      {"Additional (Half)", &Row::ADeprH},
                                      {"Additional (Remaining Half)", &Row::ADeprOpH}};
    c.insert(c.end(), rest.begin(), rest.end());
    if (layout == depreciation::ChartEditor::From2020) {
        c.push_back({"Not Allowed u/s 38", &Row::Dep38});
        c.push_back({"Proportionate", &Row::PropDep});
    }
    c.push_back({"Expenses", &Row::Exp});
    c.push_back({"Capital Gain", &Row::CG});
    return c;
}

// Two fixed columns (group, rate) before the amounts, the two worked ones after.
constexpr int kFirstAmount = 2;

}  // namespace

frmDeprChartEdit::frmDeprChartEdit(frame::Component& component, Ui& ui) : comp_(component), ui_(ui) {}

std::string frmDeprChartEdit::Caption() const {
    return "Edit Depreciation Chart Manually";
}

bool frmDeprChartEdit::Form_Load() {
    bool ok = false;
    frame::guarded(comp_.log, kModule, "Form_Load", [&] {
        auto& base = *comp_.base;
        code_ = base.Temp_Code();
        const auto last = Date::parse(base.SecondDate());
        if (code_.empty() || !last) throw std::runtime_error("No client year is open");
        year_ = last->year;
        const auto gate = depreciation::manual_chart_gate(year_);
        if (!gate.allowed) {
            ui_.info(gate.message);
            return;
        }
        layout_ = gate.editor;
        auto& db = base.dbobj();
        if (base.GetMiscOthInf("MANDEP", base.SecondDate(), code_) == "1")
            rows_ = store::read_chart(db, store::ChartTable::DeprChart, code_, year_);
        if (rows_.empty()) {
            CalculationOptions options;
            options.keep_entries = false;
            options.sheets = false;
            options.allow_hand_edited = false;
            options.write_chart = false;
            rows_ = run_calculation(db, code_, year_, Mode::DEP_IT, false, options).chart;
        }
        if (rows_.empty()) {
            ui_.info("No Assets Available !");
            return;
        }
        lblTitle = "Depreciation Chart (Income-Tax Act) - F.Y. " + year_span(year_);
        fill();
        ok = true;
    });
    return ok;
}

void frmDeprChartEdit::fill() {
    const auto cols = columns_of(layout_);
    columns_.clear();
    for (const auto& c : cols) columns_.push_back(c.member);
    const int n = kFirstAmount + static_cast<int>(cols.size()) + 2;
    vsChart.set_cols(n);
    vsChart.set_fixed_rows(1);
    vsChart.set_rows(1);
    vsChart.set_heading(0, "", "Group");
    vsChart.set_heading(1, "", "Rate (%)");
    for (std::size_t i = 0; i < cols.size(); ++i) {
        const int c = kFirstAmount + static_cast<int>(i);
        vsChart.set_heading(c, "", cols[i].heading);
        vsChart.set_col_editable(c, true);
    }
    vsChart.set_heading(n - 2, "", "Total Depreciation");
    vsChart.set_heading(n - 1, "", "WDV as on 31/03/" + std::to_string(year_));
    for (int c = 0; c < n; ++c) {
        if (c > 0) vsChart.set_col_format(c, c == 1 ? "###0.00" : "###0");
        vsChart.set_col_alignment(c, Align::right);
        vsChart.set_col_width(c, c < kFirstAmount ? 8 : 14);
    }
    rows_ = settle_chart_rows(std::move(rows_));
    vsChart.clear_rows();
    for (const auto& r : rows_) {
        const int row = vsChart.add_item();
        vsChart.set_text_matrix(row, 0, std::to_string(r.Grp));
        vsChart.set_text_matrix(row, 1, plain_number(r.Rate));
        for (std::size_t i = 0; i < columns_.size(); ++i)
            vsChart.set_text_matrix(row, kFirstAmount + static_cast<int>(i), plain_number(r.*columns_[i]));
        vsChart.set_text_matrix(row, n - 2, plain_number(r.TotDep));
        vsChart.set_text_matrix(row, n - 1, plain_number(r.WdvCl));
    }
    cmdSave.Enabled = cmdClear.Enabled = true;
}

bool frmDeprChartEdit::vsChart_ValidateEdit(int row, int col, std::string_view text) {
    bool ok = false;
    frame::guarded(comp_.log, kModule, "vsChart_ValidateEdit", [&] {
        const int i = row - vsChart.fixed_rows(), k = col - kFirstAmount;
        if (i < 0 || i >= static_cast<int>(rows_.size()) || k < 0 || k >= static_cast<int>(columns_.size()))
            return;
        // The row keeping a block's part apart (Rate -40) carries only its amount.
        if (rows_[static_cast<std::size_t>(i)].Rate == -40 &&
            columns_[static_cast<std::size_t>(k)] != &Row::Wdv)
            return;
        const auto v = parse_number(text.empty() ? std::string_view("0") : text);
        if (!v) return ui_.info("Invalid Value !");
        rows_[static_cast<std::size_t>(i)].*columns_[static_cast<std::size_t>(k)] = *v;
        fill();
        ok = true;
    });
    return ok;
}

void frmDeprChartEdit::cmdSave_Click() {
    frame::guarded(comp_.log, kModule, "cmdSave_Click", [&] {
        if (const auto refused = save_hand_edited_chart(*comp_.base, code_, year_, rows_))
            return ui_.info(*refused);
        ui_.close_screen();
    });
}

void frmDeprChartEdit::cmdClear_Click() {
    frame::guarded(comp_.log, kModule, "cmdClear_Click", [&] {
        if (!ui_.ask_yes_no("Do you want to remove the manually edited Depreciation Chart?",
                            MsgIcon::question, false))
            return;
        if (const auto refused = clear_hand_edited_chart(*comp_.base, code_, year_))
            return ui_.info(*refused);
        ui_.close_screen();
    });
}

void frmDeprChartEdit::cmdBack_Click() {
    frame::guarded(comp_.log, kModule, "cmdBack_Click", [&] { ui_.close_screen(); });
}

}  // namespace brenlow::reg

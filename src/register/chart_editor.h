#pragma once
// frmDeprChartEdit: the income-tax chart of a year edited by hand. It opens on the
// hand-edited chart when there is one (MANDEP 1), else on the chart the register
// builds; every amount of a block row can be changed, and the row's total
// depreciation and closing WDV follow (hand_edited_chart.h). Save writes it as the
// year's chart for the return forms and sets MANDEP; Clear goes back to the built
// chart. Three layouts by closing year, as the return forms changed:
//   before 2018      the chart's amounts with the remaining half of additional
//                    depreciation (ADeprOpH);
//   2018 and 2019    the same with the part of the opening WDV at half rate (WdvOpHR,
//                    for plant moving to the 40% rate);
//   from 2020        the same as before 2018 with the depreciation not allowed under
//                    section 38 (Dep38) and proportionate depreciation (PropDep).
// A closing year of 2026 or later is refused on opening.

#include <string>
#include <string_view>
#include <vector>

#include "controls/grid.h"
#include "controls/screen_controls.h"
#include "controls/ui_port.h"
#include "depreciation/chart.h"
#include "depreciation/regime_check.h"
#include "frame/component.h"
#include "frame/screen.h"

namespace brenlow::reg {

class frmDeprChartEdit : public frame::Screen {
public:
    frmDeprChartEdit(frame::Component& component, Ui& ui);
    std::string Caption() const override;

    // The open client and year of the base services; false when refused (the year
    // gate) or when the year has no chart.
    bool Form_Load();
    // A typed amount in a cell of vsChart: "Invalid Value !" for text that is no number.
    bool vsChart_ValidateEdit(int row, int col, std::string_view text);
    void cmdSave_Click();
    void cmdClear_Click();
    void cmdBack_Click();

    depreciation::ChartEditor Layout() const { return layout_; }
    const std::vector<depreciation::ChartRow>& Rows() const { return rows_; }

    Grid vsChart;
    CommandButton cmdSave, cmdClear;
    std::string lblTitle;

private:
    void fill();

    frame::Component& comp_;
    Ui& ui_;
    std::string code_;
    int year_ = 0;
    depreciation::ChartEditor layout_ = depreciation::ChartEditor::From2020;
    std::vector<depreciation::ChartRow> rows_;
    std::vector<double depreciation::ChartRow::*> columns_;  // the editable amounts of the layout
};

}  // namespace brenlow::reg

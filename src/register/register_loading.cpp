// Loading a client-year into the screen, the grids vsO and vsA with their banded
// headings, the group filter, the four modes and the deletions.

#include <algorithm>
#include <memory>

#include "controls/number_format.h"
#include "controls/vb_date.h"
#include "register/frm_new_fatr.h"
#include "register/register_text.h"

namespace brenlow::reg {
namespace {

constexpr const char* kModule = "frmNewFATR";

// Opening grid: the full column set, in order, and the keys the code reads it by.
struct ColumnDef {
    const char* key;
    const char* heading;
};
constexpr ColumnDef kOpeningColumns[] = {
    {"SN", "SN"},
    {"SrNoFATR", "SrNoFATR"},
    {"AssetGroup", "Asset Group"},
    {"Particulars", "Particulars"},
    {"Cost", "Cost"},
    {"OpDepr", "Depreciation upto 31/03/####"},
    {"ResValue", "Residual Value"},
    {"LifeYrs", "Useful Life "},
    {"RateFACL", "Rate"},
    {"WdvIT", "WDV"},
    {"RateIT", "Rate"},
    {"AddlDepRT", "Addl. Dep"},
    {"SaleDate", "Date of Sale"},
    {"SaleAmt", "Sale Amount"},
    {"SaleExp", "Expenses"},
    {"Shift", "Shift"},
    {"DeprFY", "Depreciation for the Year"},
    {"Days", "Days"},
    {"Yr", "Yr"},
    {"AccmDepr", "AccmDepr"},
    {"DetESA", "DetESA"},
    {"OthOpts", "OthOpts"},
    {"PutDate", "PutDate"},
    {"AddlDepOn", "AddlDepOn"},
};
constexpr ColumnDef kAdditionColumns[] = {
    {"SN", "SN"},
    {"SrNoFATR", "SrNoFATR"},
    {"AssetGroup", "Asset Group"},
    {"Particulars", "Particulars"},
    {"PutDate", "Date of Put to Use"},
    {"AccDate", "Date of Accounting"},
    {"Cost", "Cost"},
    {"ExciseCr", "Excise Credit"},
    {"CurrDiff", "Currency Diff."},
    {"Subsidy", "Grant/Subsidy"},
    {"MiscAdj", "Misc. Adj."},
    {"NetAmt", "Net Amount"},
    {"ResValue", "Residual Value"},
    {"LifeYrs", "Useful Life"},
    {"RateFACL", "Rate"},
    {"RateIT", "Rate"},
    {"AddlDepRT", "Addl. Dep"},
    {"SaleDate", "Date of Sale"},
    {"SaleAmt", "Sale Amount"},
    {"SaleExp", "Expenses"},
    {"Shift", "Shift"},
    {"DeprFY", "Depreciation for the Year"},
    {"Days", "Days"},
    {"OthOpts", "OthOpts"},
};

template <std::size_t N>
void define_columns(Grid& g, const ColumnDef (&defs)[N]) {
    g.set_cols(static_cast<int>(N));
    g.set_fixed_rows(2);
    if (g.rows() < 2) g.set_rows(2);
    for (int c = 0; c < static_cast<int>(N); ++c) {
        g.set_col_key(c, defs[c].key);
        g.set_heading(c, "", defs[c].heading);
        g.set_col_hidden(c, false);
    }
}

void append(std::string& line, std::string_view cell) {
    line += '\t';
    line += cell;
}

}  // namespace

frmNewFATR::frmNewFATR(frame::Component& component, Ui& ui)
    : txtPart(ui), txtCalcCA(ui), txtTotESA(ui), txtAutoCalcDeprCL(ui), comp_(component), ui_(ui) {
    set_up_fields();
}

std::string frmNewFATR::Caption() const {
    return "Asset-wise Depreciation Chart" +
           (code_.empty() ? std::string()
                          : " [" + code_ + " : F.Y. " + std::to_string(year_ - 1) + "-" +
                                std::to_string(year_ % 100 / 10) + std::to_string(year_ % 10) + "]");
}

std::optional<long> frmNewFATR::FilterGroup() const {
    const std::string id = cboFAGM.Id();
    if (id.empty()) return std::nullopt;
    return std::stol(id);
}

const store::AssetGroupRow* frmNewFATR::FindGroup(long id) const {
    for (const auto& g : groups_)
        if (g.SrNoFAGM == id) return &g;
    return nullptr;
}

bool frmNewFATR::Form_Load() {
    return frame::guarded(comp_.log, kModule, "Form_Load", [&] {
        auto& base = *comp_.base;
        code_ = base.Temp_Code();
        const auto last = Date::parse(base.SecondDate());
        if (code_.empty() || !last) throw std::runtime_error("No client year is open");
        year_ = last->year;
        store_ = std::make_unique<store::RegisterStore>(base.dbobj(), code_, year_);
        store_->ensure_tables();

        // A company's books follow the Companies Act; everyone else's are "the books".
        const int status = base.TSTATUS();
        lblBooksBand = is_company(status) ? "As per Companies Act" : "As per Books";
        lblBooksHeading =
            is_company(status) ? "For Calculation as per Companies Act 2013" : "For Calculation as per Books";

        // The old chart is looked for before anything else: its marker row is all there is.
        old_chart_ = store_->has_old_chart_marker();
        options_ = RegisterOptions::parse(store_->options_row().value_or(""));
        groups_ = store_->asset_groups();
        cl_blocks_ = store_->companies_act_blocks();
        it_blocks_ = store_->income_tax_blocks();
        book_blocks_ = store_->book_blocks();
        std::vector<IdText> it, cl;
        for (const auto& b : it_blocks_)
            if (b.ID.find('.') == std::string::npos) it.push_back({b.ID, b.Part});
        for (const auto& b : cl_blocks_) cl.push_back({b.ID, b.Part});
        BlockListIT = IdTextList::block_list(it).compose();
        BlockListCL = IdTextList::block_list(cl).compose();
        IdTextList fa;
        for (const auto& b : book_blocks_) fa.add(std::to_string(b.id), b.name);
        BlockListFA = fa.compose();

        cboBADep.List = IdTextList::parse(kBADepList);
        if (!cboBADep.select_id(base.GetMiscOthInf("BADEP", base.SecondDate(), code_)))
            cboBADep.ListIndex = 0;
        cboRndRemLife.List = IdTextList();
        for (int i = 0; i < kRemLifeRoundings; ++i)
            cboRndRemLife.List.add(std::to_string(i), rem_life_rounding_text(i));
        cboRndRemLife.ListIndex = options_.cboRndRemLife;

        set_up_grids();
        fill_group_picker();
        refresh_common_texts();
        show_state();
        if (OfferCarryForward && !old_chart_ && !store_->has_entries()) CarryForward();
        fill_filter();
        LoadRegister();
    });
}

void frmNewFATR::cboDepMode_Click(reg::Mode mode) {
    frame::guarded(comp_.log, kModule, "cboDepMode_Click", [&] {
        DepMode = mode;
        refresh_common_texts();
    });
}

void frmNewFATR::set_up_grids() {
    define_columns(vsO, kOpeningColumns);
    define_columns(vsA, kAdditionColumns);
    const std::string prev = std::to_string(year_ - 1);
    const std::string books = lblBooksBand;

    // Banded headings over the full column set.
    vsO.set_heading(vsO.col_index("Cost"), books, "Written Down Value");
    vsO.set_heading(vsO.col_index("OpDepr"), books, "Depreciation upto 31/03/" + prev);
    vsO.set_heading(vsO.col_index("ResValue"), books, "Residual Value");
    vsO.set_heading(vsO.col_index("LifeYrs"), books, "Useful Life (Years)");
    vsO.set_heading(vsO.col_index("RateFACL"), books, "Rate (%)");
    vsO.set_heading(vsO.col_index("WdvIT"), "As per Income-Tax Act", "Written Down Value");
    vsO.set_heading(vsO.col_index("RateIT"), "As per Income-Tax Act", "Rate (%)");
    vsO.set_heading(vsO.col_index("AddlDepRT"), "As per Income-Tax Act", "Addl. Dep. Rate (%)");
    vsO.set_heading(vsO.col_index("SaleDate"), "Details of Sale/Deduction", "Date");
    vsO.set_heading(vsO.col_index("SaleAmt"), "Details of Sale/Deduction", "Amount");
    vsO.set_heading(vsO.col_index("SaleExp"), "Details of Sale/Deduction", "Expenses");
    for (const char* k :
         {"Cost", "OpDepr", "ResValue", "WdvIT", "SaleAmt", "SaleExp", "AccmDepr", "AddlDepOn", "DeprFY"})
        vsO.set_col_format(vsO.col_index(k), "###0.00");
    vsO.set_col_format(vsO.col_index("LifeYrs"), "###0");
    for (const char* k : {"SrNoFATR", "Shift", "DeprFY", "Days", "Yr", "AccmDepr", "DetESA", "OthOpts",
                          "PutDate", "AddlDepOn"})
        vsO.set_col_hidden(vsO.col_index(k), true);

    const bool company = books == "As per Companies Act";
    vsA.set_heading(vsA.col_index("Subsidy"), "", "Grant / Subsidy");
    vsA.set_heading(vsA.col_index("ResValue"), books, "Residual Value");
    vsA.set_heading(vsA.col_index("LifeYrs"), books, "Useful Life (Years)");
    // A company's books rate is the Companies Act rate; anyone else's stands alone.
    if (company)
        vsA.set_heading(vsA.col_index("RateFACL"), books, "Rate (%)");
    else
        vsA.set_heading(vsA.col_index("RateFACL"), "", "Books - Rate (%)");
    vsA.set_heading(vsA.col_index("RateIT"), "", "IT - Rate (%)");
    vsA.set_heading(vsA.col_index("AddlDepRT"), "", "Addl. Dep. Rate (%)");
    vsA.set_heading(vsA.col_index("SaleDate"), "Details of Sale/Deduction", "Date");
    vsA.set_heading(vsA.col_index("SaleAmt"), "Details of Sale/Deduction", "Amount");
    vsA.set_heading(vsA.col_index("SaleExp"), "Details of Sale/Deduction", "Expenses");
    for (const char* k : {"Cost", "ExciseCr", "CurrDiff", "Subsidy", "MiscAdj", "NetAmt", "ResValue",
                          "SaleAmt", "SaleExp", "DeprFY"})
        vsA.set_col_format(vsA.col_index(k), "###0.00");
    vsA.set_col_format(vsA.col_index("LifeYrs"), "###0");
    // Dates read whole, the year with its century.
    for (const char* k : {"PutDate", "AccDate", "SaleDate"})
        vsA.set_col_format(vsA.col_index(k), "dd/MM/yyyy");
    for (const char* k : {"SrNoFATR", "Shift", "DeprFY", "Days", "OthOpts"})
        vsA.set_col_hidden(vsA.col_index(k), true);
    for (Grid* g : {&vsO, &vsA}) {
        for (int c = 0; c < g->cols(); ++c)
            if (!g->column(c).format.empty() && g->column(c).format != "dd/MM/yyyy")
                g->set_col_alignment(c, Align::right);
        for (int c = 0; c < g->cols(); ++c) g->set_col_width(c, 17);
        for (const char* k : {"OpDepr", "PutDate", "AccDate"})
            if (g->col_index(k) >= 0) g->set_col_width(g->col_index(k), 24);
        g->set_col_width(g->col_index("SN"), 5);
        g->set_col_width(g->col_index("Particulars"), 30);
        g->set_col_width(g->col_index("AssetGroup"), 22);
    }
}

void frmNewFATR::fill_group_picker() {
    // Group names shown in both grids through the combo of their column.
    IdTextList names;
    for (const auto& g : groups_) names.add(std::to_string(g.SrNoFAGM), g.Part);
    const std::string list = names.compose();
    vsO.set_col_combo_list(vsO.col_index("AssetGroup"), list);
    vsA.set_col_combo_list(vsA.col_index("AssetGroup"), list);

    // The picker: one line per group with its blocks and rates, then the way to the master.
    vsFAGM.set_cols(12);
    vsFAGM.set_fixed_rows(1);
    vsFAGM.set_rows(1);
    const char* heads[] = {"SrNoFAGM",
                           "Asset Group",
                           "Block (Books)",
                           "Rate (Books)",
                           "Classification (Companies Act)",
                           "Useful Life",
                           "Rate (SLM)",
                           "Rate (WDV)",
                           "Block (Income-Tax)",
                           "Rate (IT)",
                           "Addl. Rate (IT)",
                           "Key"};
    for (int c = 0; c < 12; ++c) vsFAGM.set_heading(c, "", heads[c]);
    vsFAGM.set_col_hidden(0, true);
    vsFAGM.set_col_hidden(11, true);
    const auto book_name = [&](long id) -> std::string {
        for (const auto& b : book_blocks_)
            if (b.id == id) return b.name;
        return kNA;
    };
    const auto cl_name = [&](const std::string& id) -> std::string {
        for (const auto& b : cl_blocks_)
            if (b.ID == id) return b.Part;
        return kNA;
    };
    const auto it_name = [&](const std::string& id) -> std::string {
        for (const auto& b : it_blocks_)
            if (b.ID == id) return b.Part;
        return kNA;
    };
    for (const auto& g : groups_) {
        const bool has_fa = g.BlockFA > 0,
                   has_cl = !g.BlockIdCL.empty() && g.BlockIdCL != "-1" && g.BlockIdCL != "-2";
        const bool has_it = !g.BlockIdIT.empty() && g.BlockIdIT != "-1" && g.BlockIdIT != "-2";
        std::string line = std::to_string(g.SrNoFAGM) + "\t" + g.Part + "\t" + book_name(g.BlockFA) + "\t" +
                           (has_fa ? format_mask(g.RateFA, "###0.00") : kNA) + "\t" + cl_name(g.BlockIdCL) +
                           "\t" + (has_cl ? format_mask(g.LifeYrs, "###0") : kNA) + "\t" +
                           (has_cl ? format_mask(g.RateSLM, "###0.00") : kNA) + "\t" +
                           (has_cl ? format_mask(g.RateWDV, "###0.00") : kNA) + "\t" + it_name(g.BlockIdIT) +
                           "\t" + (has_it ? format_mask(g.RateIT, "###0.00") : kNA) + "\t" +
                           (has_it ? format_mask(g.AddlRateIT, "###0.00") : kNA) + "\t" + "G";
        vsFAGM.add_item(line);
    }
    vsFAGM.add_item(std::string("\t") + kAddEditGroups + "\t\t\t\t\t\t\t\t\t\tM");
}

void frmNewFATR::fill_filter() {
    const std::string keep = cboFAGM.Id();
    cboFAGM.List = IdTextList();
    cboFAGM.List.add("", "(All)");
    for (long id : store_->groups_with_entries()) {
        const auto* g = FindGroup(id);
        cboFAGM.List.add(std::to_string(id), g ? g->Part : std::to_string(id));
    }
    if (!cboFAGM.select_id(keep)) cboFAGM.ListIndex = 0;
}

void frmNewFATR::cboFAGM_Click(int index) {
    frame::guarded(comp_.log, kModule, "cboFAGM_Click", [&] {
        if (index < 0 || index >= static_cast<int>(cboFAGM.List.size())) return;
        cboFAGM.ListIndex = index;
        LoadRegister();
    });
}

void frmNewFATR::LoadRegister() {
    frame::guarded(comp_.log, kModule, "LoadRegister", [&] {
        // Only the serials are read here; each grid reads its rows a page at a time
        // as they are shown, so a register of a million entries opens at once.
        shown_group_ = FilterGroup();
        opening_serials_ = store_->opening_serials(shown_group_);
        addition_serials_ = store_->addition_serials(shown_group_);
        fill_grids();
    });
}

void frmNewFATR::fill_grids() {
    // The serial-number column as wide as the largest number it shows.
    for (Grid* g : {&vsO, &vsA}) {
        const std::size_t count = g == &vsO ? opening_serials_.size() : addition_serials_.size();
        const int digits = static_cast<int>(std::to_string(count).size());
        g->set_col_width(g->col_index("SN"), std::max(5, digits + 2));
    }
    vsO.set_row_source(static_cast<int>(opening_serials_.size()),
                       [this](int first, int count) { return opening_page(first, count); });
    vsA.set_row_source(static_cast<int>(addition_serials_.size()),
                       [this](int first, int count) { return addition_page(first, count); });
    if (vsO_Row >= vsO.rows() || vsO_Row < vsO.fixed_rows())
        vsO_Row = vsO.data_rows() ? vsO.fixed_rows() : -1;
    if (vsA_Row >= vsA.rows() || vsA_Row < vsA.fixed_rows())
        vsA_Row = vsA.data_rows() ? vsA.fixed_rows() : -1;
}

namespace {

// Rows [first, first + count) of a grid paged over `serials`: the entries read by
// their serial range land on their own lines; one gone since the serials were read
// leaves its line empty but for the serial. A page that cannot be read is logged under
// the handler that asked for it and shows its serials alone: the grid asks for pages
// while drawing, where nothing may throw.
template <class Row, class ForEach, class Line>
GridRowPage page_of(frame::ErrorLog& log, const std::vector<long>& serials, int first, int count,
                    ForEach&& for_each, Line&& line) {
    GridRowPage page;
    page.lines.resize(count);
    page.data.assign(serials.begin() + first, serials.begin() + first + count);
    if (count == 0) return page;
    const auto begin = serials.begin() + first, end = begin + count;
    try {
        for_each(serials[first], serials[first + count - 1], [&](Row&& row) {
            const auto at = std::lower_bound(begin, end, static_cast<long>(row.SrNoFATR));
            if (at == end || *at != row.SrNoFATR) return;
            const int i = static_cast<int>(at - begin);
            page.lines[i] = line(row, first + i + 1);
        });
    } catch (const std::exception& e) {
        log.log(e);
        std::fill(page.lines.begin(), page.lines.end(), std::string());
    }
    return page;
}

}  // namespace

GridRowPage frmNewFATR::opening_page(int first, int count) {
    return page_of<store::OpeningRow>(
        comp_.log, opening_serials_, first, count,
        [&](long from, long to, auto&& fn) { store_->for_each_opening_between(shown_group_, from, to, fn); },
        [&](const store::OpeningRow& o, int sn) { return opening_line(o, sn); });
}

GridRowPage frmNewFATR::addition_page(int first, int count) {
    return page_of<store::AdditionRow>(
        comp_.log, addition_serials_, first, count,
        [&](long from, long to, auto&& fn) { store_->for_each_addition_between(shown_group_, from, to, fn); },
        [&](const store::AdditionRow& a, int sn) { return addition_line(a, sn); });
}

std::string frmNewFATR::opening_line(const store::OpeningRow& o, int sn) const {
    // Before the year closing 2016 no carrying amount was worked from an earlier year:
    // the row carries -2 in "Yr" so that the calculation knows the year was not chosen.
    const std::string yr = year_ < 2016 ? "-2" : std::to_string(o.YrCalcCA);
    std::string line;
    line.reserve(256);
    line += std::to_string(sn);
    for (const std::string& cell : {std::to_string(o.SrNoFATR),
                                    std::to_string(o.IdFAGM),
                                    o.Part,
                                    plain_number(o.CostWdv),
                                    plain_number(o.OpDepr),
                                    plain_number(o.ResValue),
                                    plain_number(o.LifeYrs),
                                    rate_two_or_four_places(o.RateFACL),
                                    plain_number(o.WdvIT),
                                    rate_two_or_four_places(o.RateIT),
                                    rate_two_or_four_places(o.AddlDepRT),
                                    o.SaleDate,
                                    plain_number(o.SaleAmt),
                                    plain_number(o.SaleExp),
                                    std::string(),
                                    std::string(),
                                    std::string(),
                                    yr,
                                    plain_number(o.DepCalcCA),
                                    o.DetESA,
                                    o.OthOpts,
                                    o.PutDate,
                                    plain_number(o.AddlDepOn)})
        append(line, cell);
    return line;
}

std::string frmNewFATR::addition_line(const store::AdditionRow& a, int sn) const {
    const double misc = 0 - a.ExciseCr + a.CurrDiff - a.Subsidy;
    const double net = a.PurAmt - a.ExciseCr + a.CurrDiff - a.Subsidy;
    std::string line;
    line.reserve(256);
    line += std::to_string(sn);
    for (const std::string& cell : {std::to_string(a.SrNoFATR),
                                    std::to_string(a.IdFAGM),
                                    a.Part,
                                    a.PutDate,
                                    a.AccDate,
                                    plain_number(a.PurAmt),
                                    plain_number(a.ExciseCr),
                                    plain_number(a.CurrDiff),
                                    plain_number(a.Subsidy),
                                    plain_number(misc),
                                    plain_number(net),
                                    plain_number(a.ResValue),
                                    plain_number(a.LifeYrs),
                                    rate_two_or_four_places(a.RateFACL),
                                    rate_two_or_four_places(a.RateIT),
                                    rate_two_or_four_places(a.AddlDepRT),
                                    a.SaleDate,
                                    plain_number(a.SaleAmt),
                                    plain_number(a.SaleExp),
                                    std::string(),
                                    std::string(),
                                    std::string(),
                                    a.OthOpts})
        append(line, cell);
    return line;
}

long frmNewFATR::selected_serial(const Grid& grid, int row) const {
    if (row < grid.fixed_rows() || row >= grid.rows()) return 0;
    return static_cast<long>(grid.row_data(row));
}

long frmNewFATR::selected_group(const Grid& grid, int row) const {
    return static_cast<long>(grid.value_matrix(row, grid.col_index("AssetGroup")));
}

void frmNewFATR::cmdAddO_Click() {
    frame::guarded(comp_.log, kModule, "cmdAddO_Click", [&] {
        if (Mode_ != EntryMode::None || old_chart_) return;
        clear_entry();
        Mode_ = EntryMode::ADDO;
        famEditO_Visible = true;
        if (const auto g = FilterGroup()) SelectAssetGroup(*g);
        recalc_opening();
        focus('G', 0);
    });
}

void frmNewFATR::cmdAddA_Click() {
    frame::guarded(comp_.log, kModule, "cmdAddA_Click", [&] {
        if (Mode_ != EntryMode::None || old_chart_) return;
        clear_entry();
        Mode_ = EntryMode::ADDA;
        famEditA_Visible = true;
        if (const auto g = FilterGroup()) SelectAssetGroup(*g);
        recalc_addition();
        focus('G', 0);
    });
}

void frmNewFATR::cmdEditO_Click() {
    frame::guarded(comp_.log, kModule, "cmdEditO_Click", [&] {
        const long serial = selected_serial(vsO, vsO_Row);
        if (Mode_ != EntryMode::None || serial == 0) return;
        const auto row = store_->opening_entry(selected_group(vsO, vsO_Row), serial);
        if (!row) return;
        clear_entry();
        Mode_ = EntryMode::EDITO;
        edit_serial_ = serial;
        famEditO_Visible = true;
        show_opening(*row);
    });
}

void frmNewFATR::cmdEditA_Click() {
    frame::guarded(comp_.log, kModule, "cmdEditA_Click", [&] {
        const long serial = selected_serial(vsA, vsA_Row);
        if (Mode_ != EntryMode::None || serial == 0) return;
        const auto row = store_->addition_entry(selected_group(vsA, vsA_Row), serial);
        if (!row) return;
        clear_entry();
        Mode_ = EntryMode::EDITA;
        edit_serial_ = serial;
        famEditA_Visible = true;
        show_addition(*row);
    });
}

void frmNewFATR::cmdCancel_Click() {
    frame::guarded(comp_.log, kModule, "cmdCancel_Click", [&] {
        if (Mode_ == EntryMode::None) return;
        if (!ui_.ask_yes_no("Do you want to Cancel the Changes?", MsgIcon::question, false)) return;
        Mode_ = EntryMode::None;
        edit_serial_ = 0;
        famEditO_Visible = famEditA_Visible = false;
    });
}

void frmNewFATR::cmdBack_Click() {
    frame::guarded(comp_.log, kModule, "cmdBack_Click", [&] {
        if (Mode_ != EntryMode::None) {
            if (!ui_.ask_yes_no("Do you want to Cancel the Changes?", MsgIcon::question, false)) return;
            Mode_ = EntryMode::None;
            famEditO_Visible = famEditA_Visible = false;
        }
        ui_.close_screen();
    });
}

void frmNewFATR::cmdDelO_Click() {
    frame::guarded(comp_.log, kModule, "cmdDelO_Click", [&] {
        const long serial = selected_serial(vsO, vsO_Row);
        if (Mode_ != EntryMode::None || serial == 0) return;
        if (!ui_.ask_yes_no("Do you really want to Delete selected 'Opening' Entry?", MsgIcon::question,
                            false))
            return;
        register_changed();
        store_->delete_opening(serial);
        fill_filter();
        LoadRegister();
    });
}

void frmNewFATR::cmdDelA_Click() {
    frame::guarded(comp_.log, kModule, "cmdDelA_Click", [&] {
        const long serial = selected_serial(vsA, vsA_Row);
        if (Mode_ != EntryMode::None || serial == 0) return;
        if (!ui_.ask_yes_no("Do you really want to Delete selected 'Addition' Entry?", MsgIcon::question,
                            false))
            return;
        register_changed();
        store_->delete_addition(serial);
        fill_filter();
        LoadRegister();
    });
}

void frmNewFATR::cmdDelAllO_Click() {
    frame::guarded(comp_.log, kModule, "cmdDelAllO_Click", [&] { delete_all(true); });
}

void frmNewFATR::cmdDelAllA_Click() {
    frame::guarded(comp_.log, kModule, "cmdDelAllA_Click", [&] { delete_all(false); });
}

void frmNewFATR::delete_all(bool opening) {
    if (Mode_ != EntryMode::None) return;
    if (opening) {
        if (!ui_.ask_yes_no("Do you really want to Delete all the 'Opening' Entries ?", MsgIcon::question,
                            false))
            return;
        if (!ui_.ask_yes_no("Confirm Deletion of all the 'Opening' Entries ?", MsgIcon::question, false))
            return;
        register_changed();
        store_->delete_all_openings(FilterGroup());
    } else {
        if (!ui_.ask_yes_no("Do you really want to Delete all the 'Addition' Entries ?", MsgIcon::question,
                            false))
            return;
        if (!ui_.ask_yes_no("Confirm Deletion of all the 'Addition' Entries ?", MsgIcon::question, false))
            return;
        register_changed();
        store_->delete_all_additions(FilterGroup());
    }
    fill_filter();
    LoadRegister();
}

}  // namespace brenlow::reg

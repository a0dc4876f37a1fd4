#include "schedules/ppe_note.h"

#include <array>
#include <charconv>

#include "controls/number_format.h"
#include "controls/vb_date.h"
#include "register/register_options.h"
#include "store/client_store.h"
#include "store/masters_store.h"
#include "store/register_store.h"

namespace brenlow::sched {
namespace {

using Ostikreport::ReportColumn;
using Ostikreport::ReportDocument;

constexpr const char* kPaise = "#,##0.00";

constexpr std::array kClasses = {PpeClass::Land,
                                 PpeClass::Buildings,
                                 PpeClass::PlantAndEquipment,
                                 PpeClass::FurnitureAndFixtures,
                                 PpeClass::Vehicles,
                                 PpeClass::OfficeEquipment,
                                 PpeClass::Computers,
                                 PpeClass::Intangibles,
                                 PpeClass::Others};

// The whole number an id starts with: 100 of "100-0", 4 of "4.1"; -1 when none.
int leading_number(std::string_view id) {
    int n = -1;
    const auto [end, ec] = std::from_chars(id.data(), id.data() + id.size(), n);
    return ec == std::errc() && end != id.data() ? n : -1;
}

// Natures of the income-tax blocks: 1 building, 2 furniture, 3 plant, 4 intangible
// assets, 5 ships, 100 land.
PpeClass class_of_nature(int nature) {
    switch (nature) {
        case 1:
            return PpeClass::Buildings;
        case 2:
            return PpeClass::FurnitureAndFixtures;
        case 3:
            return PpeClass::PlantAndEquipment;
        case 4:
            return PpeClass::Intangibles;
        case 100:
            return PpeClass::Land;
        default:
            return PpeClass::Others;
    }
}

// Heads of the Companies Act classification: buildings, bridges and roads are the
// company's buildings; plant with laboratory equipment; ships, aircraft, railway
// sidings, ropeways, electrical installations and hydraulic works are others.
std::optional<PpeClass> class_of_head(int head) {
    switch (head) {
        case 1:
        case 2:
        case 3:
            return PpeClass::Buildings;
        case 4:
        case 13:
            return PpeClass::PlantAndEquipment;
        case 5:
            return PpeClass::FurnitureAndFixtures;
        case 6:
            return PpeClass::Vehicles;
        case 11:
            return PpeClass::OfficeEquipment;
        case 12:
            return PpeClass::Computers;
        default:
            return head > 0 ? std::optional(PpeClass::Others) : std::nullopt;
    }
}

std::string closing_date(int year) {
    return "31/03/" + std::to_string(year);
}

std::vector<std::string> line_cells(const std::string& name, const PpeLine& l, bool with_adjustment) {
    std::vector<std::string> cells = {name,
                                      format_mask(l.gross_opening, kPaise),
                                      format_mask(l.additions, kPaise),
                                      format_mask(l.disposals, kPaise),
                                      format_mask(l.gross_closing, kPaise),
                                      format_mask(l.dep_opening, kPaise),
                                      format_mask(l.dep_for_year, kPaise)};
    if (with_adjustment) cells.push_back(format_mask(l.dep_adjustment, kPaise));
    cells.push_back(format_mask(l.dep_on_disposals, kPaise));
    cells.push_back(format_mask(l.dep_closing, kPaise));
    cells.push_back(format_mask(l.net_closing, kPaise));
    cells.push_back(format_mask(l.net_last_year, kPaise));
    return cells;
}

void add_row(ReportDocument& doc, std::vector<std::string> cells, bool bold) {
    cells.resize(doc.columns.size());
    doc.rows.push_back(std::move(cells));
    doc.bold_rows.push_back(bold);
}

void add_table(ReportDocument& doc, const PpeTable& t, bool with_adjustment) {
    add_row(doc, {"Year ended " + closing_date(t.year) + " (F.Y. " + reg::year_span(t.year) + ")"}, true);
    for (const auto& l : t.lines) add_row(doc, line_cells(ppe_class_name(l.cls), l, with_adjustment), false);
    add_row(doc, line_cells("Total", t.total, with_adjustment), true);
}

}  // namespace

const char* ppe_class_name(PpeClass cls) {
    switch (cls) {
        case PpeClass::Land:
            return "Land";
        case PpeClass::Buildings:
            return "Buildings";
        case PpeClass::PlantAndEquipment:
            return "Plant and Equipment";
        case PpeClass::FurnitureAndFixtures:
            return "Furniture and Fixtures";
        case PpeClass::Vehicles:
            return "Vehicles";
        case PpeClass::OfficeEquipment:
            return "Office Equipment";
        case PpeClass::Computers:
            return "Computers";
        case PpeClass::Intangibles:
            return "Intangible Assets";
        case PpeClass::Others:
            return "Others";
    }
    return "Others";
}

const char* ppe_class_key(PpeClass cls) {
    switch (cls) {
        case PpeClass::Land:
            return "land";
        case PpeClass::Buildings:
            return "buildings";
        case PpeClass::PlantAndEquipment:
            return "plant-and-equipment";
        case PpeClass::FurnitureAndFixtures:
            return "furniture-and-fixtures";
        case PpeClass::Vehicles:
            return "vehicles";
        case PpeClass::OfficeEquipment:
            return "office-equipment";
        case PpeClass::Computers:
            return "computers";
        case PpeClass::Intangibles:
            return "intangibles";
        case PpeClass::Others:
            return "others";
    }
    return "others";
}

PpeClass ppe_class_of(std::string_view block_it, std::string_view block_cl) {
    const int nature = leading_number(block_it);
    if (nature == 100) return PpeClass::Land;
    if (nature == 4) return PpeClass::Intangibles;
    if (const auto by_head = class_of_head(leading_number(block_cl))) return *by_head;
    return class_of_nature(nature);
}

void PpeLine::add(const PpeLine& o) {
    gross_opening += o.gross_opening;
    additions += o.additions;
    disposals += o.disposals;
    gross_closing += o.gross_closing;
    dep_opening += o.dep_opening;
    dep_for_year += o.dep_for_year;
    dep_adjustment += o.dep_adjustment;
    dep_on_disposals += o.dep_on_disposals;
    dep_closing += o.dep_closing;
    net_closing += o.net_closing;
    net_last_year += o.net_last_year;
}

SoldEntries sold_in_year(store::Database& db, const std::string& code, int year) {
    SoldEntries sold;
    const Date first = fy_first(year), last = fy_last(year);
    const auto within = [&](const std::string& date) {
        const auto d = Date::parse(date);
        return d && *d >= first && *d <= last;
    };
    store::RegisterStore rs(db, code, year);
    rs.for_each_opening_for_books([&](store::OpeningRow&& o) {
        if (within(o.SaleDate) && !reg::OpeningOpts::parse(o.OthOpts).PartDed)
            sold.emplace(depreciation::EntryKind::Opening, o.SrNoFATR);
    });
    rs.for_each_addition_for_books([&](store::AdditionRow&& a) {
        if (within(a.SaleDate) && !reg::AdditionOpts::parse(a.OthOpts).PartDed)
            sold.emplace(depreciation::EntryKind::Addition, a.SrNoFATR);
    });
    return sold;
}

PpeTable ppe_table(const reg::CalculationResult& books, const std::map<long, PpeClass>& class_of_group,
                   const SoldEntries& sold) {
    std::map<PpeClass, PpeLine> by_class;
    for (const auto& a : books.books_assets) {
        const auto found = class_of_group.find(a.IdFAGM);
        const PpeClass cls = found == class_of_group.end() ? PpeClass::Others : found->second;
        PpeLine& l = by_class[cls];
        l.cls = cls;
        // An opening asset stands at its cost less what was written off before the year;
        // an addition comes in at its cost with nothing written off.
        const bool opening = a.kind == depreciation::EntryKind::Opening;
        const double cost = opening ? a.Cost : a.Addition;
        const double written_off = opening ? a.OpDep : 0.0;
        l.gross_opening += opening ? a.Cost : 0.0;
        l.additions += opening ? 0.0 : a.Addition;
        l.dep_opening += written_off;
        l.dep_for_year += a.DepFY;
        l.dep_adjustment += a.DepAdjRemLife0_PL + a.DepAdjRemLife0_RS;
        if (sold.count({a.kind, a.SrNoFATR})) {
            // What leaves with the asset: its cost, and all written off on it to the sale
            // (the carrying amount it left at is DedAmt).
            l.disposals += cost;
            l.dep_on_disposals += cost - a.DedAmt;
        }
        l.net_closing += a.ClBal;
        l.net_last_year += a.Opening;
    }
    PpeTable t;
    t.year = books.year;
    for (const PpeClass cls : kClasses) {
        const auto it = by_class.find(cls);
        if (it == by_class.end()) continue;
        PpeLine l = it->second;
        l.gross_closing = l.gross_opening + l.additions - l.disposals;
        l.dep_closing = l.dep_opening + l.dep_for_year + l.dep_adjustment - l.dep_on_disposals;
        t.total.add(l);
        t.lines.push_back(l);
    }
    t.total.cls = PpeClass::Others;
    return t;
}

std::optional<PpeNote> ppe_note(store::Database& db, const std::string& code, int year) {
    reg::CalculationOptions options;
    options.keep_entries = false;
    options.sheets = false;
    options.write_chart = false;
    const auto table_of = [&](int y) -> std::optional<PpeTable> {
        const auto run = reg::run_calculation(db, code, y, reg::Mode::DEP_FA, false, options);
        if (run.no_assets) return std::nullopt;
        std::map<long, PpeClass> classes;
        for (const auto& g : store::asset_groups_of_year(db, y))
            classes[g.SrNoFAGM] = ppe_class_of(g.BlockIdIT, g.BlockIdCL);
        return ppe_table(run, classes, sold_in_year(db, code, y));
    };
    auto current = table_of(year);
    if (!current) return std::nullopt;
    PpeNote note;
    note.code = code;
    note.year = year;
    note.client = reg::printed_client(db, code);
    note.current = std::move(*current);
    if (store::find_client_year(db, code, year - 1)) note.previous = table_of(year - 1);
    if (note.previous) {
        // Last year's column is what last year's books closed at, class by class.
        std::map<PpeClass, double> closed;
        for (const auto& l : note.previous->lines) closed[l.cls] = l.net_closing;
        auto& cur = note.current;
        std::vector<PpeLine> lines;
        for (const PpeClass cls : kClasses) {
            PpeLine l;
            l.cls = cls;
            bool any = false;
            for (const auto& x : cur.lines)
                if (x.cls == cls) l = x, any = true;
            const auto c = closed.find(cls);
            if (!any && c == closed.end()) continue;
            l.net_last_year = c == closed.end() ? 0.0 : c->second;
            lines.push_back(l);
        }
        cur.lines = std::move(lines);
        cur.total.net_last_year = note.previous->total.net_closing;
    }
    return note;
}

ReportDocument ppe_note_report(const PpeNote& note) {
    bool with_adjustment = note.current.total.dep_adjustment != 0;
    if (note.previous) with_adjustment = with_adjustment || note.previous->total.dep_adjustment != 0;
    ReportDocument doc;
    doc.titles = {"PROPERTY, PLANT AND EQUIPMENT", reg::client_line(note.client),
                  "F.Y. " + reg::year_span(note.year), "(Amount in Rs.)"};
    const std::string gross = "Gross Block", dep = "Accumulated Depreciation", net = "Net Block";
    doc.columns = {{"", "Class of Assets", false, false, 24},   {gross, "As at\nBeginning", true, false, 14},
                   {gross, "Additions", true, false, 13},       {gross, "Disposals", true, false, 13},
                   {gross, "As at\nYear End", true, false, 14}, {dep, "As at\nBeginning", true, false, 14},
                   {dep, "For the\nYear", true, false, 13}};
    if (with_adjustment) doc.columns.push_back({dep, "Nil Life\nAdjustment", true, false, 12});
    doc.columns.push_back({dep, "On\nDisposals", true, false, 13});
    doc.columns.push_back({dep, "As at\nYear End", true, false, 14});
    doc.columns.push_back({net, "As at\nYear End", true, false, 14});
    doc.columns.push_back({net, "As at Previous\nYear End", true, false, 14});
    add_table(doc, note.current, with_adjustment);
    if (note.previous) {
        add_row(doc, {}, false);
        add_table(doc, *note.previous, with_adjustment);
    }
    if (with_adjustment)
        doc.notes.push_back(
            "Nil Life Adjustment: the carrying amount above residual value of assets whose remaining useful "
            "life was nil, adjusted rather than depreciated.");
    if (!note.previous)
        doc.notes.push_back(
            "F.Y. " + reg::year_span(note.year - 1) +
            " is not kept here: the previous year's net block is this year's opening carrying "
            "amount.");
    return doc;
}

}  // namespace brenlow::sched

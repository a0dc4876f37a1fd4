#pragma once
// The note on property, plant and equipment that a company's balance sheet carries:
// the books register of the year gathered by class of asset (land, buildings, plant
// and equipment, ...), each with its gross block, accumulated depreciation and net
// block, and beside it the same table of the previous year when the database holds
// that year. Every figure comes from the books calculation per asset, so the note's
// totals are the books chart's totals.

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "register/calculation.h"
#include "register/chart_report.h"
#include "store/database.h"
#include "suite/report.h"

namespace brenlow::sched {

// The classes of the note, in the order it prints them.
enum class PpeClass {
    Land,
    Buildings,
    PlantAndEquipment,
    FurnitureAndFixtures,
    Vehicles,
    OfficeEquipment,
    Computers,
    Intangibles,
    Others,
};
const char* ppe_class_name(PpeClass cls);
// "land", "plant-and-equipment", ...: the class's key in the note's JSON.
const char* ppe_class_key(PpeClass cls);

// The class of an asset group: land and intangible assets by the group's income-tax
// block (its nature, the number before the dash of "100-0" or "4-25"); the rest by its
// Companies Act classification (the head before the dot of "4.1"), or, for a group the
// Act does not classify, by the nature of its income-tax block.
PpeClass ppe_class_of(std::string_view block_it, std::string_view block_cl);

// One class's line of the note.
struct PpeLine {
    PpeClass cls = PpeClass::Others;
    double gross_opening = 0, additions = 0, disposals = 0, gross_closing = 0;
    double dep_opening = 0, dep_for_year = 0, dep_adjustment = 0, dep_on_disposals = 0, dep_closing = 0;
    double net_closing = 0;
    double net_last_year = 0;
    void add(const PpeLine& o);
    friend bool operator==(const PpeLine&, const PpeLine&) = default;
};

// The note of one year: the lines of the classes that hold anything, and their total.
struct PpeTable {
    int year = 0;  // closing calendar year
    std::vector<PpeLine> lines;
    PpeLine total;
};

// The year's books assets gathered by class. An asset sold in the year leaves the gross
// block at its cost and its accumulated depreciation with it; an asset whose remaining
// life ended before the year has the carrying amount above its residual value adjusted
// (dep_adjustment), not depreciated. The net block of last year is each class's
// carrying amount on the first day of the year.
// `sold` names the entries sold or deducted whole in the year, by kind and serial.
using SoldEntries = std::set<std::pair<depreciation::EntryKind, long>>;
PpeTable ppe_table(const reg::CalculationResult& books, const std::map<long, PpeClass>& class_of_group,
                   const SoldEntries& sold);

// The register's entries of a client's year that leave the books in it: a sale or
// deduction dated inside the year that is not a partial one.
SoldEntries sold_in_year(store::Database& db, const std::string& code, int year);

struct PpeNote {
    std::string code;
    int year = 0;
    reg::PrintedClient client;
    PpeTable current;
    std::optional<PpeTable> previous;  // when the database holds the previous year
};

// Works out the note of a client's year (and of the year before, when the client has it)
// by the books calculation, which only reads. nullopt when the year has no assets.
std::optional<PpeNote> ppe_note(store::Database& db, const std::string& code, int year);

// The note printed: this year's table, then the previous year's under it.
Ostikreport::ReportDocument ppe_note_report(const PpeNote& note);

}  // namespace brenlow::sched

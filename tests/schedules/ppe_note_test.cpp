// The note on property, plant and equipment from the books figures per asset.

#include "schedules/ppe_note.h"

#include <gtest/gtest.h>

namespace brenlow::sched {
namespace {

TEST(PpeNote, GroupsFallIntoClassesByTheirBlockAndClassification) {
    const struct {
        const char* block_it;
        const char* block_cl;
        PpeClass cls;
    } cases[] = {
        {"100-0", "-1", PpeClass::Land},
        {"100-0.1", "1.3", PpeClass::Land},  // land is land whatever it was classified as
        {"4-25", "-1", PpeClass::Intangibles},
        {"1-10", "1.3", PpeClass::Buildings},
        {"1-10", "3.1", PpeClass::Buildings},  // roads
        {"3-15", "4.1", PpeClass::PlantAndEquipment},
        {"3-15", "13.1", PpeClass::PlantAndEquipment},  // laboratory equipment
        {"2-10", "5.1", PpeClass::FurnitureAndFixtures},
        {"3-15", "6.3", PpeClass::Vehicles},
        {"3-15", "11", PpeClass::OfficeEquipment},
        {"3-40", "12.2", PpeClass::Computers},
        {"3-15", "14", PpeClass::Others},  // electrical installations
        {"5-20", "7.1", PpeClass::Others},
        {"2-10", "-1", PpeClass::FurnitureAndFixtures},  // not classified: by the block's nature
        {"3-15", "", PpeClass::PlantAndEquipment},
        {"-1", "-1", PpeClass::Others},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ppe_class_of(c.block_it, c.block_cl), c.cls) << c.block_it << " " << c.block_cl;
}

reg::BooksAsset opening(long group, double cost, double op_dep, double dep, double closing) {
    reg::BooksAsset a;
    a.IdFAGM = group;
    a.Cost = cost;
    a.OpDep = op_dep;
    a.Opening = cost - op_dep;
    a.DepFY = dep;
    a.ClBal = closing;
    return a;
}

TEST(PpeNote, AdditionsSalesAndAnEndedLifeMoveTheBlocksAsTheBooksDo) {
    reg::CalculationResult run;
    run.year = 2025;
    run.books_assets.push_back(opening(1, 2000000, 0, 0, 2000000));         // land
    run.books_assets.push_back(opening(2, 500000, 100000, 72400, 327600));  // a machine held
    reg::BooksAsset added;
    added.kind = depreciation::EntryKind::Addition;
    added.IdFAGM = 2;
    added.Cost = added.Addition = 300000;
    added.DepFY = 30000;
    added.ClBal = 270000;
    run.books_assets.push_back(added);
    auto sold = opening(2, 200000, 80000, 10000, 0);  // sold: left at a carrying amount of 1,10,000
    sold.SrNoFATR = 7;
    sold.DedAmt = 110000;
    run.books_assets.push_back(sold);
    auto ended = opening(3, 60000, 50000, 0, 3000);  // life over: 7,000 above its residual value
    ended.DepAdjRemLife0_PL = 7000;
    run.books_assets.push_back(ended);
    const auto t =
        ppe_table(run, {{1, PpeClass::Land}, {2, PpeClass::PlantAndEquipment}, {3, PpeClass::Computers}},
                  {{depreciation::EntryKind::Opening, 7}});

    PpeLine land{PpeClass::Land, 2000000, 0, 0, 2000000, 0, 0, 0, 0, 0, 2000000, 2000000};
    PpeLine plant{PpeClass::PlantAndEquipment,
                  700000,
                  300000,
                  200000,
                  800000,  // gross block
                  180000,
                  112400,
                  0,
                  90000,
                  202400,  // accumulated depreciation
                  597600,
                  520000};  // net block
    PpeLine computers{PpeClass::Computers, 60000, 0, 0, 60000, 50000, 0, 7000, 0, 57000, 3000, 10000};
    ASSERT_EQ(t.lines, (std::vector<PpeLine>{land, plant, computers}));
    PpeLine total{PpeClass::Others, 2760000, 300000, 200000, 2860000, 230000,
                  112400,           7000,    90000,  259400, 2600600, 2530000};
    EXPECT_EQ(t.total, total);
    // Every class adds up: its net block is its gross block less what was written off.
    for (const auto& l : t.lines) EXPECT_EQ(l.net_closing, l.gross_closing - l.dep_closing);

    PpeNote note;
    note.code = "CO";
    note.year = 2025;
    note.client = {"CO", "CO LTD"};
    note.current = t;
    const auto doc = ppe_note_report(note);
    EXPECT_EQ(doc.titles[0], "PROPERTY, PLANT AND EQUIPMENT");
    ASSERT_EQ(doc.columns.size(), 12u);  // with the nil-life column
    EXPECT_EQ(doc.rows[2],
              (std::vector<std::string>{"Plant and Equipment", "7,00,000.00", "3,00,000.00", "2,00,000.00",
                                        "8,00,000.00", "1,80,000.00", "1,12,400.00", "0.00", "90,000.00",
                                        "2,02,400.00", "5,97,600.00", "5,20,000.00"}));
    EXPECT_EQ(doc.rows.back()[0], "Total");
}

}  // namespace
}  // namespace brenlow::sched

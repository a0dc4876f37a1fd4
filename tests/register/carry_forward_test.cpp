// Three years of a register carried forward, against a table worked by hand: every
// block reopens at exactly last year's closing WDV, and the books open at last year's
// closing carrying amounts.
//
// F.Y. 2023-24 (register year 2024, half-rate line 05/10/2023):
//   Plant 15% (additional 20%): A 1,00,000 held; B 60,000 sold for 20,000; D 50,000 with a
//     partial deduction of 10,000 (still held); N1 added 15/12/2023 for 1,00,000 (half rate).
//     Full part 2,10,000 - 30,000 = 1,80,000 @ 15% = 27,000; half part 1,00,000 @ 7.5% = 7,500;
//     additional on N1 @ 10% = 10,000 (the other half carried). Depreciation 44,500, closing
//     2,35,500, spread over A, N1, D by their balances 1,00,000 : 1,00,000 : 40,000 =
//     98,125 : 98,125 : 39,250.
//   Furniture 10%: F1 30,000 sold for 45,000 (expenses 1,000); F2 5,000 held. Balance -10,000:
//     block nil, capital gain 9,000; F2 carries as "Asset Exists but WDV is NIL".
//   Computers 40%: C1 50,000, the only asset, sold for 10,000: the block ceases with a loss of
//     40,000 and nothing carries.
//   Intangibles 25%: I1 40,000, I2 20,000: depreciation 15,000, closing 45,000 = 30,000 + 15,000.
// F.Y. 2024-25 (2025, line 04/10/2024):
//   Plant: opening 2,35,500; N2 added 01/05/2024 for 2,00,000 (full), N3 added 10/01/2025 for
//     50,000 (half), both with additional depreciation. Normal 4,35,500 @ 15% = 65,325 and
//     50,000 @ 7.5% = 3,750; additional 40,000 + 5,000; N1's carried half 10,000. Depreciation
//     1,24,075, closing 3,61,425.
//   Furniture: F2 at nil, F3 added 01/06/2024 for 20,000: depreciation 2,000, closing 18,000.
//   Intangibles: I2 sold for 45,000, its whole block: balance nil, I1 carries at nil.
// F.Y. 2025-26 (2026):
//   Plant: opening 3,61,425, D sold for 20,000: 3,41,425 @ 15% = 51,214 and N3's carried half
//     5,000: depreciation 56,214, closing 2,85,211.
//   Furniture: 18,000 @ 10% = 1,800, closing 16,200. Intangibles: nil.
// Books: A (SLM 6.33%, cost 2,00,000, residual 10,000, useful life 15 years from 01/04/2009)
//   has one year left in 2023-24: 12,660, closing 37,340; its life ends with 2024-25, where the
//   37,340 - 10,000 = 27,340 above its residual value is adjusted; it carries at 10,000.

#include "register/carry_forward.h"

#include <gtest/gtest.h>

#include <map>

#include "register/calculation.h"
#include "register/register_options.h"
#include "store/client_store.h"
#include "store/masters_store.h"
#include "store/register_bulk.h"
#include "store/register_store.h"
#include "support/test_databases.h"

namespace brenlow::reg {
namespace {

constexpr const char* kCode = "C001";

struct BlockYear {
    double opening, depreciation, closing, gain;
    bool nil;
};

class CarryForwardTest : public test::BackendTest {
protected:
    void SetUp() override {
        BackendTest::SetUp();
        if (IsSkipped()) return;
        store::ensure_schema(db(), BRENLOW_TEST_DATA_DIR);
        for (int y = 2024; y <= 2027; ++y) {
            store::create_client_year(db(), kCode, y, "ACME", 2);
            store::RegisterStore(db(), kCode, y).ensure_tables();
        }
    }

    long group(const std::string& name, const std::string& block, double rate, double addl = 0) {
        store::AssetGroupRow g;
        g.Yr = 2024;
        g.Part = name;
        g.BlockIdIT = block;
        g.RateIT = rate;
        g.AddlRateIT = addl;
        g.BlockFA = -1;
        g.BlockIdCL = "-1";
        g.LifeYrs = 15;
        g.RateSLM = 6.33;
        g.RateWDV = 18.1;
        return store::add_asset_group(db(), g);
    }
    store::OpeningRow opening(long grp, const std::string& part, double wdv) {
        store::OpeningRow o;
        o.IdFAGM = grp;
        o.Part = part;
        o.PutDate = "01/04/2019";
        o.CostWdv = wdv;
        o.WdvIT = wdv;
        o.LifeYrs = 15;
        o.RateFACL = 10;
        o.RateIT = grp == plant_ ? 15 : 0;
        return o;
    }
    store::AdditionRow addition(long grp, const std::string& part, const std::string& put, double cost,
                                double addl = 0) {
        store::AdditionRow a;
        a.IdFAGM = grp;
        a.Part = part;
        a.PutDate = a.AccDate = put;
        a.PurAmt = cost;
        a.LifeYrs = 15;
        a.RateFACL = 10;
        a.AddlDepRT = addl;
        return a;
    }
    void insert(int year, std::vector<store::OpeningRow> o, std::vector<store::AdditionRow> a = {}) {
        if (!o.empty()) store::insert_openings(db(), kCode, year, o);
        if (!a.empty()) store::insert_additions(db(), kCode, year, a);
    }
    // The group of a year by its name (the carry-forward makes next year's).
    long group_of(int year, const std::string& name) {
        for (const auto& g : store::RegisterStore(db(), kCode, year).asset_groups())
            if (g.Part == name) return g.SrNoFAGM;
        ADD_FAILURE() << "no group " << name << " in " << year;
        return 0;
    }

    std::map<std::string, BlockYear> income_tax(int year) {
        CalculationOptions options;
        options.keep_entries = false;
        options.sheets = false;
        const auto run = run_calculation(db(), kCode, year, Mode::DEP_IT, false, options);
        std::map<std::string, BlockYear> out;
        for (const auto& b : run.income_tax.blocks)
            out[b.block_id] = {b.opening_wdv, b.TotDepr, b.block_nil ? 0 : b.RndWdv, b.profit_loss,
                               b.block_nil};
        return out;
    }
    std::map<std::string, BooksAsset> books(int year) {
        CalculationOptions options;
        options.keep_entries = false;
        options.sheets = false;
        std::map<std::string, BooksAsset> out;
        for (auto& a : run_calculation(db(), kCode, year, Mode::DEP_FA, false, options).books_assets)
            out[a.Particulars] = a;
        return out;
    }
    // Carries `year - 1` into `year` and checks that every block reopens at last year's
    // closing WDV and every asset at last year's closing carrying amount.
    void carry_into(int year) {
        const auto before = income_tax(year - 1);
        const auto closing_books = books(year - 1);
        const auto plan = plan_carry_forward(db(), kCode, year);
        ASSERT_FALSE(plan.openings.empty()) << plan.nothing_because;
        // The entry rules' questions of the carried entries answered Yes, as --yes does.
        CarryForwardAnswers answers;
        answers.rules = answered_beforehand(true, nullptr);
        const auto done = apply_carry_forward(db(), kCode, year, plan, answers);
        ASSERT_EQ(done.refusal, "");
        store::RegisterStore next(db(), kCode, year);
        std::map<long, std::string> block_of;
        for (const auto& g : next.asset_groups()) block_of[g.SrNoFAGM] = g.BlockIdIT;
        std::map<std::string, double> opened;
        for (const auto& o : next.opening_entries()) {
            opened[block_of[o.IdFAGM]] += o.WdvIT;
            const auto b = closing_books.find(o.Part);
            ASSERT_NE(b, closing_books.end()) << o.Part;
            EXPECT_DOUBLE_EQ(o.CostWdv - o.OpDepr, b->second.ClBal) << o.Part;
        }
        for (const auto& [block, figures] : before)
            EXPECT_DOUBLE_EQ(opened[block], figures.closing) << "block " << block << " into " << year;
        for (const auto& [block, figures] : income_tax(year))
            EXPECT_DOUBLE_EQ(figures.opening, before.count(block) ? before.at(block).closing : 0.0) << block;
    }
    store::OpeningRow opening_of(int year, const std::string& part) {
        for (const auto& o : store::RegisterStore(db(), kCode, year).opening_entries())
            if (o.Part == part) return o;
        ADD_FAILURE() << "no opening entry " << part << " in " << year;
        return {};
    }

    long plant_ = 0;
};

void expect_block(const std::map<std::string, BlockYear>& run, const std::string& block,
                  const BlockYear& want) {
    SCOPED_TRACE("block " + block);
    ASSERT_TRUE(run.count(block));
    const auto& got = run.at(block);
    EXPECT_DOUBLE_EQ(got.opening, want.opening);
    EXPECT_DOUBLE_EQ(got.depreciation, want.depreciation);
    EXPECT_DOUBLE_EQ(got.closing, want.closing);
    EXPECT_DOUBLE_EQ(got.gain, want.gain);
    EXPECT_EQ(got.nil, want.nil);
}

TEST_P(CarryForwardTest, ThreeYearsReopenEveryBlockAtLastYearsClosingWdv) {
    plant_ = group("PLANT AND MACHINERY", "3-15", 15, 20);
    const long furniture = group("FURNITURE", "2-10", 10);
    const long computers = group("COMPUTERS", "3-40", 40);
    const long software = group("SOFTWARE", "4-25", 25);

    auto a = opening(plant_, "A", 100000);
    a.PutDate = "01/04/2009";
    a.CostWdv = 200000;
    a.OpDepr = 150000;
    a.ResValue = 10000;
    a.RateFACL = 6.33;
    OpeningOpts slm;
    slm.MOD = "SLM";
    a.OthOpts = slm.compose();
    auto b = opening(plant_, "B", 60000);
    b.SaleDate = "01/10/2023";
    b.SaleAmt = 20000;
    auto d = opening(plant_, "D", 50000);
    d.SaleDate = "01/06/2023";
    d.SaleAmt = 10000;
    OpeningOpts partial;
    partial.PartDed = true;
    d.OthOpts = partial.compose();
    auto f1 = opening(furniture, "F1", 30000);
    f1.SaleDate = "01/02/2024";
    f1.SaleAmt = 45000;
    f1.SaleExp = 1000;
    auto c1 = opening(computers, "C1", 50000);
    c1.SaleDate = "01/07/2023";
    c1.SaleAmt = 10000;
    insert(2024,
           {a, b, d, f1, opening(furniture, "F2", 5000), c1, opening(software, "I1", 40000),
            opening(software, "I2", 20000)},
           {addition(plant_, "N1", "15/12/2023", 100000, 20)});

    // F.Y. 2023-24.
    auto y1 = income_tax(2024);
    expect_block(y1, "3-15", {210000, 44500, 235500, 0, false});
    expect_block(y1, "2-10", {35000, 0, 0, 9000, true});
    expect_block(y1, "3-40", {50000, 0, 0, -40000, true});
    expect_block(y1, "4-25", {60000, 15000, 45000, 0, false});
    auto books1 = books(2024);
    EXPECT_DOUBLE_EQ(books1["A"].DepFY, 12660);
    EXPECT_DOUBLE_EQ(books1["A"].ClBal, 37340);
    // The partial deduction keeps D whole in the books.
    EXPECT_GT(books1["D"].ClBal, 0);

    carry_into(2025);
    EXPECT_DOUBLE_EQ(opening_of(2025, "A").WdvIT, 98125);
    EXPECT_DOUBLE_EQ(opening_of(2025, "N1").WdvIT, 98125);
    EXPECT_DOUBLE_EQ(opening_of(2025, "N1").AddlDepOn, 100000);
    EXPECT_DOUBLE_EQ(opening_of(2025, "D").WdvIT, 39250);
    EXPECT_DOUBLE_EQ(opening_of(2025, "F2").WdvIT, 0);
    EXPECT_EQ(OpeningOpts::parse(opening_of(2025, "F2").OthOpts).WdvIT, "Y");
    EXPECT_EQ(store::RegisterStore(db(), kCode, 2025).opening_entries().size(), 6u);  // B, F1, C1 sold

    // F.Y. 2024-25.
    const long plant2 = group_of(2025, "PLANT AND MACHINERY");
    auto i2 = opening_of(2025, "I2");
    i2.SaleDate = "01/08/2024";
    i2.SaleAmt = 45000;
    store::RegisterStore(db(), kCode, 2025).update_opening(i2);
    insert(2025, {},
           {addition(plant2, "N2", "01/05/2024", 200000, 20), addition(plant2, "N3", "10/01/2025", 50000, 20),
            addition(group_of(2025, "FURNITURE"), "F3", "01/06/2024", 20000)});
    auto y2 = income_tax(2025);
    expect_block(y2, "3-15", {235500, 124075, 361425, 0, false});
    expect_block(y2, "2-10", {0, 2000, 18000, 0, false});
    expect_block(y2, "4-25", {45000, 0, 0, 0, true});
    auto books2 = books(2025);
    EXPECT_DOUBLE_EQ(books2["A"].DepAdjRemLife0_PL, 27340);
    EXPECT_DOUBLE_EQ(books2["A"].ClBal, 10000);

    carry_into(2026);
    EXPECT_DOUBLE_EQ(opening_of(2026, "N3").AddlDepOn, 50000);
    EXPECT_DOUBLE_EQ(opening_of(2026, "N1").AddlDepOn, 0);
    EXPECT_EQ(OpeningOpts::parse(opening_of(2026, "I1").OthOpts).WdvIT, "Y");
    // The asset whose life ended carries at its residual value.
    const auto a3 = opening_of(2026, "A");
    EXPECT_DOUBLE_EQ(a3.CostWdv - a3.OpDepr, 10000);

    // F.Y. 2025-26.
    auto d3 = opening_of(2026, "D");
    d3.SaleDate = "01/09/2025";
    d3.SaleAmt = 20000;
    store::RegisterStore(db(), kCode, 2026).update_opening(d3);
    auto y3 = income_tax(2026);
    expect_block(y3, "3-15", {361425, 56214, 285211, 0, false});
    expect_block(y3, "2-10", {18000, 1800, 16200, 0, false});
    EXPECT_DOUBLE_EQ(books(2026)["A"].ClBal, 10000);

    carry_into(2027);
}

TEST_P(CarryForwardTest, AYearThatHasEntriesOrALastYearWithNoneCarriesNothing) {
    EXPECT_FALSE(plan_carry_forward(db(), kCode, 2025).nothing_because.empty());
    plant_ = group("PLANT AND MACHINERY", "3-15", 15, 20);
    auto b = opening(plant_, "B", 60000);
    b.SaleDate = "01/10/2023";
    b.SaleAmt = 20000;
    insert(2024, {b});
    // Every asset sold: nothing to carry, the block's loss stays in last year.
    const auto plan = plan_carry_forward(db(), kCode, 2025);
    EXPECT_TRUE(plan.openings.empty());
    EXPECT_EQ(plan.nothing_because, "every asset of the previous year was sold");
}

BRENLOW_INSTANTIATE_BACKENDS(CarryForwardTest);

}  // namespace
}  // namespace brenlow::reg

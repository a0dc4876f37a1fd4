// The return's depreciation schedules and clause 18 of the tax audit report, on both
// backends, against a register worked by hand. F.Y. 2024-25 (register year 2025): the
// half-rate line is 04/10/2024.
//
// Plant and machinery at 15% (additional depreciation 20%): opening WDV 10,00,000 with
// 2,00,000 of last year's half-rate additions (its carried half 2,00,000 x 20% / 2 =
// 20,000); 4,50,000 bought 25/05/2024, put to use 01/06/2024, less CENVAT 30,000 and a
// subsidy 20,000 (net 4,00,000); 2,00,000 put to use 15/12/2024.
//   full 14,00,000 x 15% = 2,10,000; half 2,00,000 x 7.5% = 15,000; additional
//   4,00,000 x 20% = 80,000 and 2,00,000 x 10% = 20,000; carried half 20,000; total
//   3,45,000; closing 16,00,000 - 3,45,000 = 12,55,000.
// Computers at 40%: opening 50,000 sold 15/11/2024 for 80,000 with 2,000 of expenses:
//   the block ends nil, gain 80,000 - 50,000 - 2,000 = 28,000.
// Building at 10%: opening 5,00,000 (50,000); 3,00,000 put to use 10/01/2025 at half
//   rate (15,000); closing 7,35,000.
// Intangible assets at 25%: opening 2,00,000 (50,000); closing 1,50,000.

#include "exchange/return_documents.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <memory>

#include "register/calculation.h"
#include "register/itr_schedules.h"
#include "register/tax_audit.h"
#include "store/client_store.h"
#include "store/masters_store.h"
#include "store/register_store.h"
#include "suite/base_services.h"
#include "support/test_databases.h"

namespace brenlow::exchange {
namespace {

using Json = nlohmann::ordered_json;
using reg::DepreciationDetail;
using reg::ScheduleSlot;

constexpr const char* kCode = "C001";
constexpr int kYear = 2025;

class ReturnDocuments : public test::BackendTest {
protected:
    void SetUp() override {
        BackendTest::SetUp();
        if (IsSkipped()) return;
        dir_ =
            std::filesystem::temp_directory_path() / ("brenlow-return-" + std::to_string(::getpid()) + "-" +
                                                      std::to_string(reinterpret_cast<std::uintptr_t>(this)));
        std::filesystem::create_directories(dir_);
        base_ = std::make_unique<suite::BaseServices>(temp().open_another(), dir_.string(),
                                                      BRENLOW_TEST_DATA_DIR);
        base_->create_client_year(kCode, kYear, "ACME ENGINEERING LTD", 3);
        ASSERT_TRUE(base_->select_client_year(kCode, kYear));
        store::RegisterStore(db(), kCode, kYear).ensure_tables();
    }
    void TearDown() override {
        base_.reset();
        if (!dir_.empty()) std::filesystem::remove_all(dir_);
        BackendTest::TearDown();
    }

    long group(const std::string& name, const std::string& block_it, double rate, double addl = 0) {
        store::AssetGroupRow g;
        g.Yr = kYear;
        g.Part = name;
        g.BlockIdIT = block_it;
        g.RateIT = rate;
        g.AddlRateIT = addl;
        g.BlockFA = -1;
        g.BlockIdCL = "-1";
        g.LifeYrs = 10;
        g.RateSLM = 9.5;
        g.RateWDV = 25.89;
        return store::add_asset_group(db(), g);
    }
    void opening(long grp, const std::string& part, double wdv, double addl_on = 0, double addl_rate = 0) {
        store::OpeningRow o;
        o.IdFAGM = grp;
        o.Part = part;
        o.PutDate = "01/04/2015";
        o.CostWdv = wdv;
        o.WdvIT = wdv;
        o.AddlDepOn = addl_on;
        o.AddlDepRT = addl_rate;
        rs().insert_opening(o);
    }
    void addition(long grp, const std::string& part, const std::string& acc, const std::string& put,
                  double cost, double addl = 0, double cenvat = 0, double subsidy = 0) {
        store::AdditionRow a;
        a.IdFAGM = grp;
        a.Part = part;
        a.AccDate = acc;
        a.PutDate = put;
        a.PurAmt = cost;
        a.ExciseCr = cenvat;
        a.Subsidy = subsidy;
        a.AddlDepRT = addl;
        rs().insert_addition(a);
    }
    store::RegisterStore rs() { return store::RegisterStore(db(), kCode, kYear); }

    // The register worked by hand above.
    void worked_register() {
        const long plant = group("PLANT", "3-15", 15, 20);
        const long computers = group("COMPUTERS", "3-40", 40);
        const long building = group("FACTORY BUILDING", "1-10", 10);
        const long patents = group("PATENTS", "4-25", 25);
        opening(plant, "Plant brought forward", 1000000, 200000, 20);
        addition(plant, "Press", "25/05/2024", "01/06/2024", 450000, 20, 30000, 20000);
        addition(plant, "Boiler", "10/12/2024", "15/12/2024", 200000, 20);
        store::OpeningRow sold;
        sold.IdFAGM = computers;
        sold.Part = "Desktops";
        sold.PutDate = "01/04/2020";
        sold.CostWdv = sold.WdvIT = 50000;
        sold.SaleDate = "15/11/2024";
        sold.SaleAmt = 80000;
        sold.SaleExp = 2000;
        rs().insert_opening(sold);
        opening(building, "Factory shed", 500000);
        addition(building, "Store room", "10/01/2025", "10/01/2025", 300000);
        opening(patents, "Patent", 200000);
    }

    reg::CalculationResult run() {
        reg::CalculationOptions options;
        options.keep_entries = false;
        options.sheets = false;
        return reg::run_calculation(db(), kCode, kYear, reg::Mode::DEP_IT, false, options);
    }

    std::filesystem::path dir_;
    std::unique_ptr<suite::BaseServices> base_;
};

TEST_P(ReturnDocuments, EveryLineOfTheSchedulesCarriesTheChartsFiguresWorkedByHand) {
    worked_register();
    const auto built = reg::return_schedules(*base_, kCode, kYear);
    ASSERT_TRUE(built.refusals.empty()) << built.refusals.front();
    EXPECT_EQ(built.schedules.form, reg::ItrForm::ITR6);  // a company

    DepreciationDetail plant;
    plant.WDVFirstDay = 1000000;
    plant.AdditionsGrThan180Days = 400000;
    plant.FullRateDeprAmt = 1400000;
    plant.AdditionsLessThan180Days = 200000;
    plant.HalfRateDeprAmt = 200000;
    plant.DepreciationAtFullRate = 210000;
    plant.DepreciationAtHalfRate = 15000;
    plant.AddlnDeprOnGT180DayAdditions = 80000;
    plant.AddlnDeprDuringYearAdditions = 20000;
    plant.AddlnDeprOnLessThan180DayAdditions = 20000;
    plant.TotalDepreciation = 345000;
    plant.NetAggregateDepreciation = 345000;
    plant.WDVLastDay = 1255000;

    DepreciationDetail computers;
    computers.WDVFirstDay = 50000;
    computers.RealizationTotalPeriod = 80000;
    computers.ExpdrOnTrforSaleAsset = 2000;
    computers.CapGainUs50 = 28000;

    DepreciationDetail building;
    building.WDVFirstDay = 500000;
    building.FullRateDeprAmt = 500000;
    building.AdditionsLessThan180Days = 300000;
    building.HalfRateDeprAmt = 300000;
    building.DepreciationAtFullRate = 50000;
    building.DepreciationAtHalfRate = 15000;
    building.TotalDepreciation = 65000;
    building.NetAggregateDepreciation = 65000;
    building.WDVLastDay = 735000;

    DepreciationDetail patents;
    patents.WDVFirstDay = 200000;
    patents.FullRateDeprAmt = 200000;
    patents.DepreciationAtFullRate = 50000;
    patents.TotalDepreciation = 50000;
    patents.NetAggregateDepreciation = 50000;
    patents.WDVLastDay = 150000;

    const std::vector<std::pair<ScheduleSlot, DepreciationDetail>> want = {
        {ScheduleSlot::PlantRate15, plant},
        {ScheduleSlot::PlantRate40, computers},
        {ScheduleSlot::BuildingRate10, building},
        {ScheduleSlot::IntangibleRate25, patents},
    };
    ASSERT_EQ(built.schedules.lines.size(), want.size());
    for (std::size_t i = 0; i < want.size(); ++i) {
        const auto& line = built.schedules.lines[i];
        EXPECT_EQ(line.slot, want[i].first) << line.block;
        EXPECT_EQ(line.detail, want[i].second) << line.block;
        // The return's identities, on every line.
        const auto& d = line.detail;
        const auto full_base = d.WDVFirstDay + d.AdditionsGrThan180Days - d.RealizationTotalPeriod;
        EXPECT_EQ(d.FullRateDeprAmt, std::max<std::int64_t>(0, full_base));
        EXPECT_EQ(d.HalfRateDeprAmt,
                  std::max<std::int64_t>(0, d.AdditionsLessThan180Days - d.RealizationPeriodDuringYear +
                                                std::min<std::int64_t>(0, full_base)));
        EXPECT_EQ(d.TotalDepreciation, d.DepreciationAtFullRate + d.DepreciationAtHalfRate +
                                           d.AddlnDeprOnGT180DayAdditions + d.AddlnDeprDuringYearAdditions +
                                           d.AddlnDeprOnLessThan180DayAdditions);
        EXPECT_EQ(d.WDVLastDay,
                  std::max<std::int64_t>(0, d.FullRateDeprAmt + d.HalfRateDeprAmt - d.TotalDepreciation));
    }
    EXPECT_EQ(built.schedules.lines[0].block, "MACHINERY AND PLANT @ 15%");

    // Schedule DEP takes the net aggregate of each line, DCG the gain of the block that
    // ceased.
    const Json doc = itr_schedules_json(built.schedules);
    const Json& form = doc.at("ITR").at("ITR6");
    EXPECT_EQ(form.at("ScheduleDEP").at("SummaryFromDeprSch"),
              Json::parse(R"({"PlantMachinerySummary": {"DeprBlockTot15Percent": 345000,
                  "DeprBlockTot30Percent": 0, "DeprBlockTot40Percent": 0, "DeprBlockTot45Percent": 0,
                  "TotPlntMach": 345000},
                "BuildingSummary": {"DeprBlockTot5Percent": 0, "DeprBlockTot10Percent": 65000,
                  "DeprBlockTot40Percent": 0, "TotBuildng": 65000},
                "FurnitureSummary": 0, "IntangibleAssetSummary": 50000, "ShipsSummary": 0,
                "TotalDepreciation": 460000})"));
    EXPECT_EQ(form.at("ScheduleDCG").at("SummaryFromDeprSchCG"),
              Json::parse(R"({"PlantMachinerySummaryCG": {"DeprBlockTot15Percent": 0,
                  "DeprBlockTot30Percent": 0, "DeprBlockTot40Percent": 28000, "DeprBlockTot45Percent": 0,
                  "TotPlntMach": 28000},
                "BuildingSummaryCG": {"DeprBlockTot5Percent": 0, "DeprBlockTot10Percent": 0,
                  "DeprBlockTot40Percent": 0, "TotBuildng": 0},
                "FurnitureSummary": 0, "IntangibleAssetSummary": 0, "ShipsSummary": 0,
                "TotalDepreciation": 28000})"));
    // The other assets carry no additional depreciation items.
    const Json& shed = form.at("ScheduleDOA").at("Building").at("Rate10").at("DepreciationDetail");
    EXPECT_FALSE(shed.contains("AddlnDeprOnGT180DayAdditions"));
    EXPECT_EQ(shed.at("WDVLastDay"), 735000);
    EXPECT_EQ(form.at("ScheduleDPM").at("PlantMachinery").at("Rate15").at("DepreciationDetail").size(), 19u);
}

TEST_P(ReturnDocuments, ClauseEighteenListsEachBlockWithItsAdditionsDeductionsAndClosingWdv) {
    worked_register();
    const auto blocks = reg::clause18_blocks(db(), run());
    ASSERT_EQ(blocks.size(), 4u);
    EXPECT_EQ(reg::clause18_additions_csv(blocks),
              "Description of Block,Date of Purchase,Date Put to Use,Purchase value,CENVAT,Change in Rate of "
              "Exchange,Subsidy/Grant,Total Value of Purchases\n"
              "BUILDING @ 10%,10/01/2025,10/01/2025,300000,0,0,0,300000\n"
              "MACHINERY AND PLANT @ 15%,25/05/2024,01/06/2024,450000,30000,0,20000,400000\n"
              "MACHINERY AND PLANT @ 15%,10/12/2024,15/12/2024,200000,0,0,0,200000\n");
    EXPECT_EQ(reg::clause18_deductions_csv(blocks),
              "Description of Block,Date of Sale,Amount\n"
              "MACHINERY AND PLANT @ 40%,15/11/2024,80000\n");

    const Json doc = form3cd_depreciation_json(blocks);
    const Json& list = doc.at("Form3cdDeprAllw");
    ASSERT_EQ(list.size(), 4u);
    EXPECT_EQ(list[1], Json::parse(R"({"DescBlockAssets": "MACHINERY AND PLANT @ 15%", "RateOfDep": 15.0,
        "OpeningWDV": 1000000, "adjustmentwrittendown": 0,
        "Additions": [
          {"PurchaseOrSaleDate": "2024-05-25", "DatePutToUse": "2024-06-01", "PurchaseOrSaleValue": 450000,
           "TotalPurchaseValue": 400000},
          {"PurchaseOrSaleDate": "2024-12-10", "DatePutToUse": "2024-12-15", "PurchaseOrSaleValue": 200000,
           "TotalPurchaseValue": 200000}],
        "Deductions": [],
        "Puttousefor180daysormore": 400000, "Lessthan180": 200000, "TotalPurchaseValue": 600000,
        "TotalDeduction": 0, "DepAllowable": 345000, "WrittenDownVal": 1255000})"));
    EXPECT_EQ(list[2].at("Deductions"),
              Json::parse(R"([{"PurchaseOrSaleDate": "2024-11-15", "PurchaseOrSaleValue": 80000}])"));
    EXPECT_EQ(list[2].at("WrittenDownVal"), 0);
    // Opening + additions - deductions - depreciation is the closing WDV of every block
    // that goes on.
    for (const auto& b : list) {
        if (b.at("WrittenDownVal") == 0) continue;
        EXPECT_EQ(b.at("WrittenDownVal").get<long long>(),
                  b.at("OpeningWDV").get<long long>() - b.at("adjustmentwrittendown").get<long long>() +
                      b.at("TotalPurchaseValue").get<long long>() - b.at("TotalDeduction").get<long long>() -
                      b.at("DepAllowable").get<long long>())
            << b.at("DescBlockAssets");
    }
    EXPECT_TRUE(form3cd_refusals(blocks).empty());

    // The print: each block's items (a) to (f); the goodwill item from A.Y. 2021-22.
    const auto print = reg::clause18_report(blocks, kYear, {kCode, "ACME ENGINEERING LTD"});
    EXPECT_EQ(print.titles[1], "Form No. 3CD, clause 18");
    std::vector<std::string> items;
    for (const auto& row : print.rows)
        if (row[1] == "MACHINERY AND PLANT @ 15%" || !items.empty()) {
            if (row[0].empty() && row[1].empty()) break;
            items.push_back(row[0] + " " + row[1] + " " + row[8]);
        }
    EXPECT_EQ(items, (std::vector<std::string>{
                         "(a) MACHINERY AND PLANT @ 15% ", "(b) Rate of depreciation 15%",
                         "(c) Opening written down value 10,00,000", "(cb) Goodwill taken out of the block 0",
                         "(cc) Adjusted written down value 10,00,000", "(d) Additions ", " Press 4,00,000",
                         " Boiler 2,00,000", " Total additions 6,00,000", " Deductions ",
                         " Total deductions 0", "(e) Depreciation allowable 3,45,000",
                         "(f) Written down value at the end of the year 12,55,000"}));
}

TEST_P(ReturnDocuments, ACompanyUnderSection115BAAWithAdditionalDepreciationIsRefused) {
    worked_register();
    base_->SetMiscOthInf("REGIME115BA", "1", base_->SecondDate(), kCode, "115BA/115BAA/115BAB");
    const auto built = reg::return_schedules(*base_, kCode, kYear);
    EXPECT_EQ(built.refusals,
              (std::vector<std::string>{
                  "Additional Depreciation is not allowed, if opted for taxation u/s 115BA/115BAA/115BAB. "
                  "MACHINERY AND PLANT @ 15%: additional depreciation of 1,20,000 (items 12 to 14)."}));
}

TEST(ReturnSchedules, RefuseABlockWithoutALineByItsNameAndRate) {
    // A plant block at 100% (older rates) has no line in this year's schedule.
    reg::CalculationResult made;
    made.year = kYear;
    depreciation::ChartRow row;
    row.Grp = 3;
    row.Rate = 100;
    row.Wdv = 1000;
    row.FullAmt = 1000;
    row.DeprF = 1000;
    row.TotDep = 1000;
    made.chart.push_back(row);
    depreciation::ItBlockResult b;
    b.block_name = "MACHINERY AND PLANT";
    b.rate = 100;
    made.income_tax.blocks.push_back(b);
    const auto built = reg::itr_schedules(made, reg::ItrForm::ITR6);
    EXPECT_EQ(built.refusals,
              (std::vector<std::string>{"The block MACHINERY AND PLANT at 100% has no line in "
                                        "the return's schedules of depreciation."}));
    EXPECT_TRUE(built.schedules.lines.empty());
}

TEST(ReturnSchedules, RefuseAFigureThatBreaksTheReturnsArithmeticNamingIt) {
    reg::CalculationResult made;
    made.year = kYear;
    depreciation::ChartRow row;
    row.Grp = 4;
    row.Rate = 25;
    row.Wdv = 1000;
    row.FullAmt = 1000;
    row.DeprF = 250;
    row.TotDep = 250;
    row.WdvCl = 800;  // 1,000 - 250 is 750
    made.chart.push_back(row);
    depreciation::ItBlockResult b;
    b.block_name = "INTANGIBLE ASSETS";
    b.rate = 25;
    made.income_tax.blocks.push_back(b);
    const auto built = reg::itr_schedules(made, reg::ItrForm::ITR6);
    EXPECT_EQ(built.refusals,
              (std::vector<std::string>{"INTANGIBLE ASSETS @ 25%: WDVLastDay (item 21) is 800; the return's "
                                        "formula max(0, 6+9-15) gives 750."}));
}

TEST(ReturnForm, FollowsTheKindOfAssessee) {
    EXPECT_EQ(reg::itr_form_of_kind(AssesseeKind::Individual), reg::ItrForm::ITR3);
    EXPECT_EQ(reg::itr_form_of_kind(AssesseeKind::HUF), reg::ItrForm::ITR3);
    EXPECT_EQ(reg::itr_form_of_kind(AssesseeKind::Firm), reg::ItrForm::ITR5);
    EXPECT_EQ(reg::itr_form_of_kind(AssesseeKind::LLP), reg::ItrForm::ITR5);
    EXPECT_EQ(reg::itr_form_of_kind(AssesseeKind::CoopSociety), reg::ItrForm::ITR5);
    EXPECT_EQ(reg::itr_form_of_kind(AssesseeKind::Company), reg::ItrForm::ITR6);
}

TEST(ReturnForm, HasNoKnownSchemaFromTheTaxYearOfTheNewAct) {
    EXPECT_EQ(reg::return_schema_unknown(2026), "");
    EXPECT_EQ(reg::return_schema_unknown(2027),
              "The return forms of tax year 2026-27 under the Income-tax Act, 2025 have no published schema "
              "yet: nothing was written.");
}

BRENLOW_INSTANTIATE_BACKENDS(ReturnDocuments);

}  // namespace
}  // namespace brenlow::exchange

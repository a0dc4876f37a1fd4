// brenlow itr schedules, chart --3cd and capital-gains list on the demonstration client,
// on both backends. The return's JSON is read back by Python's own json module: what a
// return utility reads, not what our writer meant.

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "cli_fixture.h"

namespace brenlow::cli {
namespace {

namespace fs = std::filesystem;

// Every key of the return's depreciation schedules, checked where the line has it.
constexpr const char* kReadBack = R"PY(
import json, sys
doc = json.load(open(sys.argv[1]))
form = doc["ITR"]["ITR6"]
detail = ["WDVFirstDay", "AdditionsGrThan180Days", "RealizationTotalPeriod", "FullRateDeprAmt",
          "AdditionsLessThan180Days", "RealizationPeriodDuringYear", "HalfRateDeprAmt",
          "DepreciationAtFullRate", "DepreciationAtHalfRate", "AddlnDeprOnGT180DayAdditions",
          "AddlnDeprDuringYearAdditions", "AddlnDeprOnLessThan180DayAdditions", "TotalDepreciation",
          "DepDisAllowUs38_2", "NetAggregateDepreciation", "ProportionateAggDepreciation",
          "ExpdrOnTrforSaleAsset", "CapGainUs50", "WDVLastDay"]
half = {"AdditionsLessThan180Days", "RealizationPeriodDuringYear", "HalfRateDeprAmt", "DepreciationAtHalfRate"}
addl = {"AddlnDeprOnGT180DayAdditions", "AddlnDeprDuringYearAdditions", "AddlnDeprOnLessThan180DayAdditions"}
lines = []
for rate, body in form["ScheduleDPM"]["PlantMachinery"].items():
    want = [k for k in detail if rate != "Rate45" or (k not in half and k not in addl)]
    lines.append(("DPM " + rate, body["DepreciationDetail"], want))
for group, body in form["ScheduleDOA"].items():
    if group == "Land":
        lines.append(("DOA Land", body["DepreciationDetail"], ["WDVFirstDay", "WDVLastDay"]))
        continue
    for rate, inner in body.items():
        lines.append(("DOA " + group + " " + rate, inner["DepreciationDetail"], [k for k in detail if k not in addl]))
for name, d, want in lines:
    missing = [k for k in want if k not in d]
    extra = [k for k in d if k not in want]
    assert not missing and not extra, (name, missing, extra)
    for k, v in d.items():
        assert isinstance(v, int), (name, k, v)
        assert k == "CapGainUs50" or 0 <= v <= 99999999999999, (name, k, v)
for key, plant, building in (("ScheduleDEP", "PlantMachinerySummary", "BuildingSummary"),
                             ("ScheduleDCG", "PlantMachinerySummaryCG", "BuildingSummaryCG")):
    s = form[key]["SummaryFromDeprSch" + ("CG" if key == "ScheduleDCG" else "")]
    assert sorted(s[plant]) == sorted(["DeprBlockTot15Percent", "DeprBlockTot30Percent",
                                       "DeprBlockTot40Percent", "DeprBlockTot45Percent", "TotPlntMach"]), s
    assert sorted(s[building]) == sorted(["DeprBlockTot5Percent", "DeprBlockTot10Percent",
                                          "DeprBlockTot40Percent", "TotBuildng"]), s
    for k in ("FurnitureSummary", "IntangibleAssetSummary", "ShipsSummary", "TotalDepreciation"):
        assert isinstance(s[k], int), (key, k)
print(" ".join(sorted(name for name, _, _ in lines)))
print(form["ScheduleDEP"]["SummaryFromDeprSch"]["TotalDepreciation"],
      form["ScheduleDCG"]["SummaryFromDeprSchCG"]["TotalDepreciation"])
)PY";

std::string slurp(const fs::path& p) {
    std::ifstream in(p, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

class ItrCli : public CliTest {
protected:
    void SetUp() override {
        CliTest::SetUp();
        if (IsSkipped()) return;
        out_ = fs::temp_directory_path() / ("brenlow-itr-" + std::to_string(::getpid()) + "-" +
                                            std::to_string(reinterpret_cast<std::uintptr_t>(this)));
        fs::create_directories(out_);
        const auto r = cli({"demo", "--out", out_.string()});
        ASSERT_EQ(r.code, 0) << r.err;
    }
    void TearDown() override {
        std::error_code ec;
        fs::remove_all(out_, ec);
        CliTest::TearDown();
    }
    // Python's answer on the file, or the empty text when it refused it.
    std::string read_back(const fs::path& file) {
        const auto script = out_ / "read_back.py";
        std::ofstream(script) << kReadBack;
        const std::string command = "python3 " + script.string() + " " + file.string() + " 2>&1";
        std::string text;
        if (FILE* p = ::popen(command.c_str(), "r")) {
            char buf[512];
            while (const std::size_t n = std::fread(buf, 1, sizeof buf, p)) text.append(buf, n);
            EXPECT_EQ(::pclose(p), 0) << text;
        }
        return text;
    }
    fs::path out_;
};

TEST_P(ItrCli, TheReturnsSchedulesOfTheDemoClientReadBackWithEveryKeyOfTheirLines) {
    const auto file = out_ / "itr.json";
    const auto r = cli({"itr", "schedules", "--client", "DEMO01", "--year", "2025", file.string()});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(r.out, "Wrote " + file.string() + " (ITR6, 5 blocks)\n");
    // The demo's blocks: plant at 15% and 40%, building, furniture and intangibles; the
    // DEP total is the income-tax chart's depreciation, the DCG total the computers'
    // gain.
    EXPECT_EQ(
        read_back(file),
        "DOA Building Rate10 DOA FurnitureFittings Rate10 DOA IntangibleAssets Rate25 DPM Rate15 DPM Rate40\n"
        "1098463 33000\n");
    // The form is the one asked for; the figures stay.
    const auto itr5 = out_ / "itr5.json";
    ASSERT_EQ(
        cli({"itr", "schedules", "--client", "DEMO01", "--year", "2025", "--form", "ITR5", itr5.string()})
            .code,
        0);
    EXPECT_EQ(nlohmann::json::parse(slurp(itr5))["ITR"]["ITR5"],
              nlohmann::json::parse(slurp(file))["ITR"]["ITR6"]);
    // A file already there is kept unless --yes.
    const auto again = cli({"itr", "schedules", "--client", "DEMO01", "--year", "2025", file.string()});
    EXPECT_EQ(again.code, 2) << again.err;

    // A tax year under the new Act: no schema, nothing written.
    fs::remove(file);
    const auto later = cli({"itr", "schedules", "--client", "DEMO01", "--year", "2027", file.string()});
    EXPECT_EQ(later.code, 1);
    EXPECT_EQ(
        later.err,
        "The return forms of tax year 2026-27 under the Income-tax Act, 2025 have no published schema yet: "
        "nothing was written.\n");
    EXPECT_FALSE(fs::exists(file));
    const auto dir = out_ / "3cd";
    fs::create_directories(dir);
    EXPECT_EQ(cli({"chart", "--3cd", "--client", "DEMO01", "--year", "2027", "--csv", dir.string()}).code, 1);
    EXPECT_TRUE(fs::is_empty(dir));
}

TEST_P(ItrCli, AdditionalDepreciationUnderSection115BAAWritesNothing) {
    ASSERT_EQ(cli({"init", "--client", "DEMO01", "--year", "2025", "--regime", "115BAA"}).code, 0);
    const auto file = out_ / "itr.json";
    const auto r = cli({"itr", "schedules", "--client", "DEMO01", "--year", "2025", file.string()});
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(
        r.err,
        "Additional Depreciation is not allowed, if opted for taxation u/s 115BA/115BAA/115BAB. MACHINERY "
        "AND PLANT @ 15%: additional depreciation of 3,19,200 (items 12 to 14).\nNothing was written.\n");
    EXPECT_FALSE(fs::exists(file));
}

TEST_P(ItrCli, ClauseEighteenGoesIntoTheUtilitysFilesAndTheTransferredGainsAreListed) {
    const auto dir = out_ / "3cd";
    fs::create_directories(dir);
    const auto r = cli({"chart", "--3cd", "--client", "DEMO01", "--year", "2025", "--csv", dir.string()});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(slurp(dir / "clause18-additions.csv"),
              "Description of Block,Date of Purchase,Date Put to Use,Purchase value,CENVAT,Change in Rate of "
              "Exchange,Subsidy/Grant,Total Value of Purchases\n"
              "BUILDING @ 10%,10/01/2025,10/01/2025,600000,0,0,0,600000\n"
              "FURNITURE AND FITTINGS @ 10%,20/08/2024,20/08/2024,90000,0,0,0,90000\n"
              "MACHINERY AND PLANT @ 15%,12/06/2024,12/06/2024,800000,0,0,50000,750000\n"
              "MACHINERY AND PLANT @ 15%,03/10/2024,03/10/2024,250000,0,0,0,250000\n"
              "MACHINERY AND PLANT @ 15%,04/10/2024,04/10/2024,180000,0,0,0,180000\n"
              "MACHINERY AND PLANT @ 15%,15/12/2024,15/12/2024,400000,0,12000,0,412000\n"
              "INTANGIBLE ASSETS @ 25%,01/02/2025,01/02/2025,200000,0,0,0,200000\n");
    EXPECT_EQ(slurp(dir / "clause18-deductions.csv"),
              "Description of Block,Date of Sale,Amount\nMACHINERY AND PLANT @ 40%,18/11/2024,95000\n");
    const auto json = out_ / "3cd.json";
    ASSERT_EQ(cli({"chart", "--3cd", "--client", "DEMO01", "--year", "2025", "--json", json.string()}).code,
              0);
    const auto doc = nlohmann::json::parse(slurp(json));
    std::vector<std::string> blocks;
    for (const auto& b : doc["Form3cdDeprAllw"]) blocks.push_back(b["DescBlockAssets"].get<std::string>());
    EXPECT_EQ(blocks, (std::vector<std::string>{"BUILDING @ 10%", "FURNITURE AND FITTINGS @ 10%",
                                                "MACHINERY AND PLANT @ 15%", "MACHINERY AND PLANT @ 40%",
                                                "INTANGIBLE ASSETS @ 25%"}));

    // The capital-gains rows: none until the transfer writes the computers' gain.
    auto gains = cli({"capital-gains", "list", "--client", "DEMO01", "--year", "2025", "--json"});
    ASSERT_EQ(gains.code, 0) << gains.err;
    EXPECT_TRUE(nlohmann::json::parse(gains.out)["capital_gains"].empty());
    ASSERT_EQ(cli({"transfer", "capital-gains", "--client", "DEMO01", "--year", "2025", "--yes"}).code, 0);
    gains = cli({"capital-gains", "list", "--client", "DEMO01", "--year", "2025", "--json"});
    ASSERT_EQ(gains.code, 0) << gains.err;
    EXPECT_EQ(nlohmann::json::parse(gains.out)["capital_gains"], nlohmann::json::parse(R"([{"capital_no": 1,
        "block": "MACHINERY AND PLANT @ 40%", "date_of_last_sale": "18/11/2024", "consideration": 95000.0,
        "wdv": 60000.0, "additions": 0.0, "expenses": 2000.0, "gain": 33000.0,
        "nature": "short-term u/s 50"}])"));
}

BRENLOW_INSTANTIATE_BACKENDS(ItrCli);

}  // namespace
}  // namespace brenlow::cli

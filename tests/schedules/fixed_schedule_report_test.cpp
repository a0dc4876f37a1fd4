#include "schedules/fixed_schedule_report.h"

#include <gtest/gtest.h>

#include "suite/defaults.h"

namespace brenlow::sched {
namespace {

std::vector<ParticularFigures> two_particulars() {
    ParticularInput plant, scrap;
    plant.row.PART_NM = "PLANT";
    plant.row.OP_BAL = 150000;
    plant.row.op_bal_dep = 50000;
    plant.row.RATE_DEP = 15;
    plant.row.method_id = 1;
    plant.row.wdv = 100000;
    plant.row.compit_rate = 15;
    store::FdaRow late;
    late.ad_ded_id = store::kFdaAddition;
    late.cost = 10000;
    late.ad_date = "15/01/2016";
    plant.lines = {late};
    scrap.row.PART_NM = "SCRAP";
    scrap.row.OP_BAL = 5000;
    scrap.row.method_id = 4;
    scrap.row.CGrpId = store::kNotConsidered;
    scrap.row.IGrpId = store::kNotConsidered;
    return particular_figures({plant, scrap}, 2016);
}

TEST(FixedScheduleReport, IncomeTaxChartHasALinePerParticularAndTheTotal) {
    const auto doc = schedule_income_tax_chart(two_particulars(), 2016, {"C001", "ACME TRADERS"});
    EXPECT_EQ(doc.titles[0], "FIXED ASSETS");
    EXPECT_EQ(doc.titles[1], "Client: C001 - ACME TRADERS");
    EXPECT_EQ(doc.titles[2], "F.Y. 2015-16");
    EXPECT_EQ(doc.titles[3], "A.Y. 2016-17");
    ASSERT_EQ(doc.rows.size(), 2u);  // the particular outside the Act has no line
    const std::vector<std::string> plant = {"PLANT", "15.00",    "1,00,000", "0", "10,000",
                                            "0",     "1,10,000", "15,750",   "0", "94,250"};
    EXPECT_EQ(doc.rows[0], plant);
    EXPECT_EQ(doc.rows[1][0], "Total");
    EXPECT_TRUE(doc.bold_rows[1]);
    EXPECT_EQ(doc.columns[9].heading, "WDV as on 31/03/2016");
}

TEST(FixedScheduleReport, BooksChartLeavesOutWhatTheBooksDoNotConsider) {
    const auto doc = schedule_books_chart(two_particulars(), 2016, {"C001", ""});
    EXPECT_EQ(doc.titles[1], "Client: C001");
    ASSERT_EQ(doc.rows.size(), 2u);
    EXPECT_EQ(doc.rows[0][0], "PLANT");
    EXPECT_EQ(doc.rows[0][1], "1,50,000.00");
    EXPECT_EQ(doc.rows[0][4], "1,60,000.00");  // gross block at the year end
}

TEST(FixedScheduleReport, ClsDepCShowsThroughTheReportObject) {
    suite::ReportObject report;
    std::vector<std::string> shown;
    report.set_viewer([&](const Ostikreport::ReportDocument& d) { shown.push_back(d.titles.at(0)); });
    ClsDepC charts(report);
    charts.print_books(two_particulars(), 2016, {"C001", ""});
    charts.print_income_tax(two_particulars(), 2016, {"C001", ""});
    EXPECT_EQ(shown.size(), 2u);
    EXPECT_EQ(report.prepared().columns.size(), 10u);
}

}  // namespace
}  // namespace brenlow::sched

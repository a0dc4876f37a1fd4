#include "suite/report.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>

namespace brenlow::Ostikreport {
namespace {

ReportDocument chart_like(int rows) {
    ReportDocument doc;
    doc.titles = {"FIXED ASSETS", "F.Y. 2024-25"};
    doc.columns = {{"", "Block", false, false, 12},
                   {"", "Rate\n%", true, false, 4},
                   {"Addition", "180 Days\nor More", true, false, 10},
                   {"Addition", "Less than\n180 Days", true, false, 10},
                   {"", "Total", true, false, 10}};
    for (int i = 0; i < rows; ++i)
        doc.rows.push_back({"PLANT " + std::to_string(i), "15", "1,00,000", "5,000", "1,05,000"});
    doc.bold_rows = {false, true};
    doc.notes = {"Note: figures in Rs. \xE2\x82\xB9"};
    return doc;
}

TEST(ReportText, BandsSpanTheirColumnsAndAmountsAlignRight) {
    const auto lay = lay_out(chart_like(2));
    const std::string text = render_text(chart_like(2));
    // Two titles, rule, band line, two heading lines, rule.
    ASSERT_EQ(lay.header.size(), 7u);
    const std::string& band = lay.header[3];
    const auto at = band.find("Addition");
    ASSERT_NE(at, std::string::npos);
    EXPECT_EQ(band.find("Addition", at + 1), std::string::npos) << "one caption for the band: " << band;
    // "Addition" is centred over the two addition columns, not over the first only.
    const std::string& row = lay.body[0].text;
    const auto first = row.find("1,00,000"), second = row.find("5,000");
    EXPECT_GT(at + 4, first);
    EXPECT_LT(at + 4, second + 5);
    // Amounts end at their column's right edge: both rows end at the same place.
    EXPECT_EQ(lay.body[0].text.size(), lay.body[1].text.size());
    EXPECT_TRUE(lay.body[1].bold);
    EXPECT_FALSE(lay.body[0].bold);
    EXPECT_NE(text.find("Note: figures in Rs."), std::string::npos);
}

TEST(ReportPdf, PrintsTheDocumentsThatFollowOnPagesOfTheirOwn) {
    const auto path =
        std::filesystem::temp_directory_path() / ("brenlow-follows-" + std::to_string(::getpid()) + ".pdf");
    auto doc = chart_like(3);
    ReportDocument summary;
    summary.titles = {"BLOCK WISE SUMMARY"};
    summary.columns = {{"", "Block", false, false, 20}, {"", "Gain", true, false, 10}};
    summary.rows = {{"MACHINERY AND PLANT", "33,000"}};
    summary.landscape = false;
    doc.follows.push_back(summary);
    write_pdf(doc, path.string());
    std::ifstream in(path, std::ios::binary);
    std::stringstream ss;
    ss << in.rdbuf();
    const std::string pdf = ss.str();
    std::filesystem::remove(path);
    EXPECT_NE(pdf.find("BLOCK WISE SUMMARY"), std::string::npos);
    EXPECT_NE(pdf.find("33,000"), std::string::npos);
    EXPECT_NE(pdf.find("/Count 2"), std::string::npos);
    EXPECT_NE(pdf.find("(Page 2 of 2)"), std::string::npos);
    // The summary keeps its own portrait page.
    EXPECT_NE(pdf.find("/MediaBox [0 0 595.00 842.00]"), std::string::npos);
}

TEST(ReportPdf, IsAWellFormedFileWithTheHeadingsOnEveryPage) {
    const auto path =
        std::filesystem::temp_directory_path() / ("brenlow-report-" + std::to_string(::getpid()) + ".pdf");
    write_pdf(chart_like(300), path.string());
    std::ifstream in(path, std::ios::binary);
    std::stringstream ss;
    ss << in.rdbuf();
    const std::string pdf = ss.str();
    ASSERT_EQ(pdf.rfind("%PDF-1.4", 0), 0u);
    EXPECT_NE(pdf.find("%%EOF"), std::string::npos);

    // Every xref entry points at the start of its object.
    const auto xref_at = std::stoul(pdf.substr(pdf.rfind("startxref") + 10));
    std::istringstream xref(pdf.substr(xref_at));
    std::string word;
    int first = 0, count = 0;
    xref >> word >> first >> count;
    ASSERT_EQ(word, "xref");
    std::string off, gen, kind;
    xref >> off >> gen >> kind;  // the free entry
    for (int n = 1; n < count; ++n) {
        xref >> off >> gen >> kind;
        const std::string expect = std::to_string(n) + " 0 obj";
        EXPECT_EQ(pdf.compare(std::stoul(off), expect.size(), expect), 0) << "object " << n;
    }

    // 300 rows do not fit one page; each page repeats the heading.
    std::smatch m;
    ASSERT_TRUE(std::regex_search(pdf, m, std::regex("/Count (\\d+)")));
    const int pages = std::stoi(m[1]);
    EXPECT_GT(pages, 1);
    std::size_t headings = 0;
    for (auto p = pdf.find("FIXED ASSETS"); p != std::string::npos; p = pdf.find("FIXED ASSETS", p + 1))
        ++headings;
    EXPECT_EQ(headings, static_cast<std::size_t>(pages));
    EXPECT_NE(pdf.find("(PLANT 299"), std::string::npos);
    // The rupee sign is spelt out in the fonts' encoding.
    EXPECT_NE(pdf.find("Rs. Rs."), std::string::npos);
    std::filesystem::remove(path);
}

}  // namespace
}  // namespace brenlow::Ostikreport

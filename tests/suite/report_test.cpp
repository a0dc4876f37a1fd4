#include "suite/report.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "suite/report_pages.h"
#include "support/pdf_text.h"

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

std::string temp_pdf(const char* name) {
    return (std::filesystem::temp_directory_path() /
            (std::string("brenlow-") + name + "-" + std::to_string(::getpid()) + ".pdf"))
        .string();
}

TEST(ReportPdf, PrintsTheDocumentsThatFollowOnPagesOfTheirOwn) {
    if (!test::have_pdf_tools()) GTEST_SKIP() << "poppler-utils not installed";
    const auto path = temp_pdf("follows");
    auto doc = chart_like(3);
    ReportDocument summary;
    summary.titles = {"BLOCK WISE SUMMARY"};
    summary.columns = {{"", "Block", false, false, 20}, {"", "Gain", true, false, 10}};
    summary.rows = {{"MACHINERY AND PLANT", "33,000"}};
    summary.landscape = false;
    doc.follows.push_back(summary);
    write_pdf(doc, path, suite::Existing::replace);
    const std::string info = test::pdf_info(path, 1, 2);
    EXPECT_NE(info.find("Pages:           2"), std::string::npos) << info;
    // The chart on landscape A4, the summary on a portrait page of its own.
    EXPECT_NE(info.find("Page    1 size:  842 x 595 pts"), std::string::npos) << info;
    EXPECT_NE(info.find("Page    2 size:  595 x 842 pts"), std::string::npos) << info;
    const std::string first = test::pdf_text(path, 1), second = test::pdf_text(path, 2);
    EXPECT_EQ(first.find("BLOCK WISE SUMMARY"), std::string::npos);
    EXPECT_NE(second.find("BLOCK WISE SUMMARY"), std::string::npos) << second;
    EXPECT_NE(second.find("33,000"), std::string::npos) << second;
    EXPECT_NE(second.find("Page 2 of 2"), std::string::npos) << second;
    std::filesystem::remove(path);
}

TEST(ReportPdf, RepeatsTheHeadingsOnEveryPageInTheReportFace) {
    if (!test::have_pdf_tools()) GTEST_SKIP() << "poppler-utils not installed";
    const auto path = temp_pdf("report");
    write_pdf(chart_like(300), path, suite::Existing::replace);
    const std::string info = test::pdf_info(path);
    const auto at = info.find("Pages:");
    ASSERT_NE(at, std::string::npos) << "poppler does not read the file: " << info;
    const int pages = std::stoi(info.substr(at + 6));
    EXPECT_GT(pages, 1);
    for (int p = 1; p <= pages; ++p) {
        const std::string text = test::pdf_text(path, p);
        EXPECT_NE(text.find("FIXED ASSETS"), std::string::npos) << "page " << p;
        EXPECT_NE(text.find("Less than"), std::string::npos) << "page " << p;
        EXPECT_NE(text.find("Page " + std::to_string(p) + " of " + std::to_string(pages)), std::string::npos);
    }
    const std::string last = test::pdf_text(path, pages);
    EXPECT_NE(last.find("PLANT 299"), std::string::npos);
    // The rupee sign is printed as itself, in a face embedded in the file.
    EXPECT_NE(last.find("Note: figures in Rs. \xE2\x82\xB9"), std::string::npos) << last;
    const std::string fonts = test::command_output("pdffonts '" + path + "'");
    std::string face = report_face("Verdana");
    face.erase(std::remove(face.begin(), face.end(), ' '), face.end());
    EXPECT_NE(fonts.find("+" + face), std::string::npos) << fonts;
    EXPECT_NE(fonts.find(" yes yes "), std::string::npos) << "embedded and subset: " << fonts;
    std::filesystem::remove(path);
}

TEST(ReportFace, IsTheFaceAskedForWhereInstalledElseDejaVuSans) {
    EXPECT_EQ(report_face("DejaVu Sans"), "DejaVu Sans");
    EXPECT_EQ(report_face("No Such Face Anywhere"), kFallbackFace);
    EXPECT_EQ(report_face(""), kFallbackFace);
    const std::string verdana = report_face("Verdana");
    EXPECT_TRUE(verdana == "Verdana" || verdana == kFallbackFace) << verdana;
}

// Placement with a face whose every character is half an em wide.
std::vector<PlacedPage> placed(const ReportDocument& doc) {
    return place_report(doc, [](std::string_view s, bool bold) { return (bold ? 0.6 : 0.5) * s.size(); });
}

const PlacedText* find_text(const PlacedPage& page, std::string_view text) {
    for (const auto& t : page.texts)
        if (t.text == text) return &t;
    return nullptr;
}

TEST(ReportPlacement, AmountsEndAtTheirColumnsRightEdgeAndBandsCentreOverTheirColumns) {
    auto doc = chart_like(2);
    doc.rows[0][4] = "1,05,000";
    doc.rows[1][4] = "5";
    const auto pages = placed(doc);
    ASSERT_EQ(pages.size(), 1u);
    const auto& page = pages[0];
    EXPECT_EQ(page.font_size, 9);
    const PlacedText* wide = find_text(page, "1,05,000");
    const PlacedText* narrow = find_text(page, "5");
    ASSERT_TRUE(wide && narrow);
    EXPECT_DOUBLE_EQ(wide->x + 0.5 * 8 * 9, narrow->x + 0.6 * 1 * 9);  // row 2 is bold
    EXPECT_TRUE(narrow->bold);
    EXPECT_FALSE(wide->bold);
    // "Addition" sits over both addition columns: between the first's left and the second's right.
    const PlacedText* band = find_text(page, "Addition");
    const PlacedText* more = find_text(page, "or More");
    const PlacedText* less = find_text(page, "180 Days");
    ASSERT_TRUE(band && more && less);
    EXPECT_GT(band->x, more->x - 40);
    EXPECT_LT(band->x + 0.5 * 8 * 9, less->x + 0.5 * 8 * 9 + 40);
    EXPECT_LT(band->y, more->y);
    EXPECT_NE(find_text(page, "Page 1 of 1"), nullptr);
}

TEST(ReportPlacement, AWideTableShrinksTheFaceToThePageButNotBelowFourPoints) {
    ReportDocument doc;
    doc.titles = {"WIDE"};
    for (int c = 0; c < 20; ++c) doc.columns.push_back({"", "C" + std::to_string(c), true, false, 12});
    doc.rows.push_back(std::vector<std::string>(20, "1,00,000"));
    const auto wide = placed(doc);
    EXPECT_LT(wide[0].font_size, 9);
    EXPECT_GE(wide[0].font_size, 4);
    double right = 0;
    for (const auto& t : wide[0].texts)
        right = std::max(right, t.x + 0.5 * t.text.size() * wide[0].font_size);
    EXPECT_LE(right, 842 - 30 + 0.01);
    doc.columns.resize(300, {"", "C", true, false, 12});
    EXPECT_EQ(placed(doc)[0].font_size, 4);
}

}  // namespace
}  // namespace brenlow::Ostikreport

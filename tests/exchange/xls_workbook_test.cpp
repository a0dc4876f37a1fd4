#include "exchange/xls_workbook.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "exchange/spreadsheet_files.h"

namespace brenlow::exchange {
namespace {

namespace fs = std::filesystem;

xls::Workbook small_book() {
    xls::StyleSheet styles;
    xls::CellFormat bold;
    bold.bold = true;
    xls::CellFormat date;
    date.number_format = "dd/mm/yyyy";
    date.bordered = true;
    const auto b = styles.add(bold), d = styles.add(date);
    xls::Workbook book;
    xls::Sheet s;
    s.name = "Opening";
    s.widths[2] = 36 * 256;
    s.rows.push_back(
        {0, {{0, b, xls::Cell::Kind::Text, 0, "Particulars"}, {1, 15, xls::Cell::Kind::Blank, 0, {}}}});
    s.rows.push_back({3,
                      {{0, 15, xls::Cell::Kind::Text, 0, "LATHE 'A' \xC2\xA6 \xE2\x82\xB9"},
                       {1, d, xls::Cell::Kind::Number, 45455, {}},
                       {2, 15, xls::Cell::Kind::Number, -1234.5678, {}}}});
    s.merges.push_back({0, 0, 0, 1});
    book.sheets.push_back(s);
    book.sheets.push_back({"Addition", {}, {}, {}});
    book.styles = styles.records();
    return book;
}

TEST(XlsWorkbook, CellsFormatsAndMergesReadBackAsWritten) {
    const auto book = xls::read(xls::write(small_book()));
    ASSERT_TRUE(book);
    ASSERT_EQ(book->sheets.size(), 2u);
    EXPECT_EQ(book->sheets[1].name, "Addition");
    const auto& s = book->sheets[0];
    EXPECT_EQ(s.widths.at(2), 36 * 256);
    ASSERT_EQ(s.rows.size(), 2u);
    EXPECT_EQ(s.rows[0].cells[0].text, "Particulars");
    EXPECT_TRUE(xls::format_of(*book, s.rows[0].cells[0].xf).bold);
    EXPECT_EQ(s.rows[1].index, 3);
    EXPECT_EQ(s.rows[1].cells[0].text, "LATHE 'A' \xC2\xA6 \xE2\x82\xB9");  // wide characters kept
    EXPECT_EQ(s.rows[1].cells[1].number, 45455);
    EXPECT_EQ(s.rows[1].cells[2].number, -1234.5678);
    const auto date = xls::format_of(*book, s.rows[1].cells[1].xf);
    EXPECT_EQ(date.number_format, "dd/mm/yyyy");
    EXPECT_TRUE(date.bordered);
    EXPECT_FALSE(date.bold);
    ASSERT_EQ(s.merges.size(), 1u);
    EXPECT_EQ(s.merges[0].last_col, 1);
}

TEST(XlsWorkbook, BytesThatAreNoWorkbookAreRefused) {
    EXPECT_FALSE(xls::read(""));
    EXPECT_FALSE(xls::read("PK\x03\x04 a zip"));
    std::string cut = xls::write(small_book());
    cut.resize(1024);
    EXPECT_FALSE(xls::read(cut));
}

TEST(XlsWorkbook, TextRoundTripsThroughUtf16) {
    for (const std::string s : {"", "plain", "\xC2\xA6", "\xE2\x82\xB9 500", "\xF0\x9F\x93\x88 chart"})
        EXPECT_EQ(xls::utf8_of(xls::utf16_of(s)), s);
    EXPECT_EQ(xls::utf16_of("\xF0\x9F\x93\x88").size(), 2u);  // a surrogate pair
}

// Past 109 allocation sectors (7 MB) the container needs its extension sectors, and
// past 8,224 bytes the shared strings run on in CONTINUE records: freexl, a reader
// not of this project, reads every cell back.
TEST(XlsWorkbook, ALargeWorkbookIsReadWholeByAnotherReader) {
    xls::Workbook book = small_book();
    auto& s = book.sheets[1];
    constexpr int kRows = 60000;
    for (int r = 0; r < kRows; ++r) {
        xls::Row row{static_cast<std::uint16_t>(r), {}};
        row.cells.push_back({0, 15, xls::Cell::Kind::Text, 0, "Asset number " + std::to_string(r)});
        for (std::uint16_t c = 1; c < 8; ++c)
            row.cells.push_back({c, 15, xls::Cell::Kind::Number, r * 10.0 + c, {}});
        s.rows.push_back(std::move(row));
    }
    const std::string bytes = xls::write(book);
    ASSERT_GT(bytes.size(), 109u * 128 * 512);
    const fs::path path =
        fs::temp_directory_path() / ("brenlow-large-" + std::to_string(::getpid()) + ".xls");
    std::ofstream(path, std::ios::binary) << bytes;
    std::string error;
    const auto sheets = read_spreadsheet(path.string(), error);
    fs::remove(path);
    ASSERT_TRUE(sheets) << error;
    ASSERT_EQ(sheets->size(), 2u);
    const auto& rows = (*sheets)[1].rows;
    ASSERT_EQ(rows.size(), static_cast<std::size_t>(kRows));
    EXPECT_EQ(rows.back().first, kRows);
    EXPECT_EQ(rows.back().second[0].text, "Asset number " + std::to_string(kRows - 1));
    EXPECT_EQ(rows.back().second[7].number, (kRows - 1) * 10.0 + 7);
    EXPECT_EQ(rows[12345].second[0].text, "Asset number 12345");
    // The same bytes through this program's own reader.
    const auto again = xls::read(bytes);
    ASSERT_TRUE(again);
    EXPECT_EQ(again->sheets[1].rows.size(), static_cast<std::size_t>(kRows));
}

TEST(SpreadsheetFiles, TheKindComesFromTheExtensionInAnyCase) {
    EXPECT_EQ(spreadsheet_kind("a.xls"), SpreadsheetKind::Xls);
    EXPECT_EQ(spreadsheet_kind("A.XLSX"), SpreadsheetKind::Xlsx);
    EXPECT_FALSE(spreadsheet_kind("a.json"));
    EXPECT_FALSE(spreadsheet_kind("xls"));
}

}  // namespace
}  // namespace brenlow::exchange

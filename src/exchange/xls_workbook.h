#pragma once
// Excel 97-2003 workbooks (BIFF8 records in a Compound File container), written and
// read back by hand: no Debian library writes them. The reading side reads what the
// writing side writes (the shipped templates) and keeps a template's style records
// as they stand, so a workbook built on a template carries its fonts, number formats
// and cell formats unchanged. Workbooks from other programs are read with freexl.

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brenlow::exchange::xls {

struct Cell {
    enum class Kind { Blank, Number, Text };
    std::uint16_t col = 0;
    std::uint16_t xf = 15;  // the default cell format
    Kind kind = Kind::Blank;
    double number = 0;
    std::string text;  // UTF-8
};

struct Row {
    std::uint16_t index = 0;  // from 0 (sheet row 1)
    std::vector<Cell> cells;  // by column, ascending
};

struct Merge {
    std::uint16_t first_row, last_row, first_col, last_col;
};

struct Sheet {
    std::string name;
    std::map<std::uint16_t, std::uint16_t> widths;  // column -> width in 1/256 of a character
    std::vector<Row> rows;                          // by index, ascending
    std::vector<Merge> merges;
};

// A global record kept as it stands (FONT, FORMAT, XF, STYLE).
struct Record {
    std::uint16_t type;
    std::string body;
};

struct Workbook {
    std::vector<Record> styles;  // in their order: fonts, formats, cell formats, styles
    std::vector<Sheet> sheets;
    // Read back from a file this writer wrote (its WRITEACCESS names the program) and
    // no other program saved since: every cell is one of the kinds written here.
    bool written_here = false;
};

// What a cell format says, as far as another writer needs it.
struct CellFormat {
    std::string number_format = "General";
    bool bold = false;
    bool wrap = false;
    bool centred = false;
    bool bordered = false;
};

// Builds the style records of a new workbook: the four default fonts and the sixteen
// style formats come first, then one cell format per add().
class StyleSheet {
public:
    StyleSheet();
    // The index of a cell format to put on a cell.
    std::uint16_t add(const CellFormat& format);
    std::vector<Record> records() const;

private:
    std::vector<Record> fonts_, formats_, xfs_;
    std::map<std::string, std::uint16_t> format_ids_;
    int next_format_ = 164;  // the first number format of a workbook's own
};

// The cell format an XF index stands for.
CellFormat format_of(const Workbook& book, std::uint16_t xf);

// The workbook file's bytes. A sheet holds at most 65,536 rows and 256 columns.
std::string write(const Workbook& book);

// Reads a workbook this writer wrote; nullopt when the bytes are not one. The
// container and the records are checked first, whoever wrote the file: when they are
// damaged (a chain of sectors that loops, a record that runs past its sheet, a sheet cut
// short) `damage` says how, in words for the person; it stays empty for bytes that are
// no .xls and for another program's sound workbook, which another reader may read. A
// workbook of this writer holds only the records it writes, each of its own length, and
// every cell inside its row: anything else is damage.
std::optional<Workbook> read(std::string_view bytes, std::string& damage);
std::optional<Workbook> read(std::string_view bytes);

// UTF-8 to UTF-16 code units and back.
std::u16string utf16_of(std::string_view utf8);
std::string utf8_of(std::u16string_view utf16);

}  // namespace brenlow::exchange::xls

#pragma once
// What a workbook read for import may hold. Nothing a file says about itself (a length, a
// count, a size, a cell reference) is trusted past these; past them the file is refused,
// naming the sheet, row and column. The README lists them.

#include <cstddef>
#include <cstdint>
#include <string>

namespace brenlow::exchange::limits {

inline constexpr std::uintmax_t kFileBytes = std::uintmax_t{64} << 20;  // the workbook file
inline constexpr std::size_t kSheets = 256;
inline constexpr long kRows = 1048576;   // the last row of an .xlsx sheet
inline constexpr long kColumns = 16384;  // A to XFD
// Cells right of this column are no register data: they are passed over, not kept.
inline constexpr int kKeptColumns = 64;
inline constexpr std::size_t kRowsWithCells = 65536;  // per sheet
inline constexpr std::size_t kCellChars = 32767;      // characters of one cell's text
// A part of an .xlsx unpacks to at most this many times the file's size, plus a mebibyte
// (the small parts of a small file pack tighter than any sheet).
inline constexpr std::uint64_t kUnpackRatio = 64;
inline constexpr std::uint64_t kUnpackFloor = std::uint64_t{1} << 20;
// The area an .xls sheet of another program says it spans (its reader holds every cell
// of it): 65,536 rows of 64 columns.
inline constexpr std::uint64_t kXlsArea = 65536u * 64u;

// "A", "Z", "AA", ... for a column counted from 0.
inline std::string column_name(long col) {
    std::string s;
    for (long c = col + 1; c > 0; c = (c - 1) / 26)
        s.insert(s.begin(), static_cast<char>('A' + (c - 1) % 26));
    return s;
}

}  // namespace brenlow::exchange::limits

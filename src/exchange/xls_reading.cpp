// Reading an .xls back: the container opened by compound_file, then the records of the
// workbook stream walked with every length checked against what is left of its
// substream. Any workbook's framing is checked here (records inside their sheet, every
// sheet where the workbook says and ended, the area a sheet says it spans); a workbook of
// this writer is then read strictly, record by record.

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "exchange/compound_file.h"
#include "exchange/sheet_limits.h"
#include "exchange/xls_bytes.h"
#include "exchange/xls_workbook.h"

namespace brenlow::exchange::xls {
namespace {

using namespace records;
using bytes::get16;
using bytes::get32;
using bytes::get_double;

struct Damaged {
    std::string what;
};

struct Rec {
    std::uint16_t type;
    std::string_view body;
};

// The records of one substream from `at`; each lies wholly inside the stream.
class Records {
public:
    Records(std::string_view s, std::size_t at, std::string where)
        : s_(s), at_(at), where_(std::move(where)) {}
    // The next record; nullopt at the end of the stream.
    std::optional<Rec> next() {
        if (at_ == s_.size()) return std::nullopt;
        if (s_.size() - at_ < 4) throw Damaged{where_ + " is cut short"};
        const std::uint16_t type = get16(s_, at_), len = get16(s_, at_ + 2);
        if (s_.size() - at_ - 4 < len) throw Damaged{where_ + " is cut short"};
        const Rec r{type, s_.substr(at_ + 4, len)};
        at_ += 4u + len;
        return r;
    }

private:
    std::string_view s_;
    std::size_t at_;
    std::string where_;
};

// `count` characters at `at` (the option byte first), wholly inside `s`; nullopt when
// they run past it or the option byte is not one this writer writes.
std::optional<std::string> chars_of(std::string_view s, std::size_t& at, std::size_t count) {
    if (at >= s.size()) return std::nullopt;
    const auto option = static_cast<unsigned char>(s[at++]);
    if (option > 1) return std::nullopt;
    const std::size_t width = option ? 2 : 1;
    if ((s.size() - at) / width < count) return std::nullopt;
    std::u16string u;
    u.reserve(count);
    for (std::size_t i = 0; i < count; ++i, at += width)
        u.push_back(width == 2 ? static_cast<char16_t>(get16(s, at)) : static_cast<unsigned char>(s[at]));
    return utf8_of(u);
}

// Excel 95's `count` one-byte characters at `at`.
std::optional<std::string> bytes_of(std::string_view s, std::size_t at, std::size_t count) {
    if (at > s.size() || s.size() - at < count) return std::nullopt;
    std::u16string u;
    for (std::size_t i = 0; i < count; ++i) u.push_back(static_cast<unsigned char>(s[at + i]));
    return utf8_of(u);
}

std::string sheet_words(const std::string& name) {
    return "the sheet \"" + name + "\"";
}

struct BoundSheet {
    std::uint32_t offset;
    bool worksheet;
    std::string name;
};

// The framing every workbook must have, whoever wrote it.
struct Framing {
    std::vector<BoundSheet> sheets;
    bool written_here = false;
};

// The shortest body of each kind of cell record; its row and column come first.
std::size_t cell_length(std::uint16_t type) {
    switch (type) {
        case kBlank:
            return 6;
        case kBoolErr:
        case kLabel:
        case kRString:
        case kMulBlank:
            return 8;
        case kLabelSst:
        case kRk:
            return 10;
        case kMulRk:
            return 12;
        case kNumber:
            return 14;
        case kFormula:
            return 20;
        default:
            return 0;
    }
}

Framing check_framing(std::string_view s) {
    Framing f;
    Records globals(s, 0, "the workbook's list of sheets");
    const auto bof = globals.next();
    if (!bof || bof->type != kBof || bof->body.size() < 4 || get16(bof->body, 2) != 0x0005)
        throw Damaged{"it does not begin as a workbook"};
    // Excel 95 names its sheets in bytes, with no option byte.
    const bool biff8 = get16(bof->body, 0) == 0x0600;
    bool ended = false;
    while (const auto r = globals.next()) {
        if (r->type == kEof) {
            ended = true;
            break;
        }
        if (r->type == kFilePass) throw Damaged{"it is protected by a password"};
        if (r->type == kWriteAccess && r->body.size() >= 3) {
            std::size_t p = 2;
            const auto who = chars_of(r->body, p, get16(r->body, 0));
            f.written_here = who && *who == kWriter;
        }
        if (r->type == kBoundSheet) {
            if (r->body.size() < 8) throw Damaged{"the workbook's list of sheets is damaged"};
            std::size_t p = 7;
            const std::size_t length = static_cast<unsigned char>(r->body[6]);
            const auto name = biff8 ? chars_of(r->body, p, length) : bytes_of(r->body, p, length);
            if (!name) throw Damaged{"the workbook's list of sheets is damaged"};
            f.sheets.push_back({get32(r->body, 0), r->body[5] == 0, *name});
            if (f.sheets.size() > limits::kSheets)
                throw Damaged{"it has more than " + std::to_string(limits::kSheets) + " sheets"};
        }
        // Every shared text takes at least three bytes of the stream.
        if (r->type == kSst && (r->body.size() < 8 || get32(r->body, 4) > s.size() / 3))
            throw Damaged{"its table of shared texts is damaged"};
    }
    if (!ended) throw Damaged{"the workbook's list of sheets is cut short"};
    for (const auto& sheet : f.sheets) {
        const std::string where = sheet_words(sheet.name);
        if (sheet.offset >= s.size() || get16(s, sheet.offset) != kBof)
            throw Damaged{where + " does not begin where the workbook says"};
        Records records(s, sheet.offset, where);
        int depth = 0;  // a chart inside a sheet has a BOF and EOF of its own
        std::uint32_t rows = 65536, cols = 256;
        std::optional<std::pair<std::uint32_t, std::uint32_t>> last;  // the last cell read whole
        for (;;) {
            const auto r = records.next();
            if (!r) throw Damaged{where + " is cut short"};
            if (r->type == kBof) ++depth;
            if (r->type == kEof && --depth == 0) break;
            if (depth != 1 || !sheet.worksheet) continue;
            if (r->type == kDimensions) {
                // Excel 97 counts rows in 32 bits, Excel 95 in 16.
                const bool long_rows = r->body.size() >= 14;
                if (r->body.size() < 10) throw Damaged{where + " is damaged: its area cannot be read"};
                rows = long_rows ? get32(r->body, 4) : get16(r->body, 2);
                cols = get16(r->body, long_rows ? 10 : 6);
                if (rows > 65536 || cols > 256 || static_cast<std::uint64_t>(rows) * cols > limits::kXlsArea)
                    throw Damaged{where + " says it spans " + std::to_string(rows) + " rows and " +
                                  std::to_string(cols) + " columns, more than " +
                                  std::to_string(limits::kXlsArea) + " cells"};
            }
            if (const std::size_t need = cell_length(r->type)) {
                if (r->body.size() < need)
                    throw Damaged{where + " is damaged " +
                                  (last ? "after row " + std::to_string(last->first + 1) + ", column " +
                                              limits::column_name(last->second)
                                        : std::string("before its first cell"))};
                const std::uint32_t row = get16(r->body, 0), col = get16(r->body, 2);
                if (row >= rows || col >= cols)
                    throw Damaged{where + " has a cell at row " + std::to_string(row + 1) + ", column " +
                                  limits::column_name(col) + " outside the area it says it spans"};
                last = {row, col};
            }
        }
    }
    // Another reader walks the whole stream, not only what the list of sheets points at:
    // every record of it lies inside it and, for another program's file, within the
    // longest body the format allows (this writer's long shared texts run past it). A
    // tail of zeros is padding.
    for (std::size_t at = 0; at < s.size();) {
        if (s.find_first_not_of('\0', at) == std::string_view::npos) break;
        const std::size_t len = s.size() - at >= 4 ? get16(s, at + 2) : s.size();
        if (s.size() - at < 4 || s.size() - at - 4 < len) throw Damaged{"the workbook is cut short"};
        if (!f.written_here && len > kMaxBody)
            throw Damaged{"the workbook holds a record longer than the format allows"};
        at += 4 + len;
    }
    return f;
}

// A sheet of this writer, record by record: only the records it writes, each of its
// own length, every cell inside a row the sheet announced, in order.
class OwnSheet {
public:
    OwnSheet(std::string_view s, const BoundSheet& b, const std::vector<std::string>& strings)
        : s_(s), b_(b), strings_(strings), where_(sheet_words(b.name)) {}

    Sheet read() {
        Sheet sheet;
        sheet.name = b_.name;
        Records records(s_, b_.offset, where_);
        records.next();  // the BOF, checked with the framing
        std::map<std::uint16_t, std::pair<std::uint16_t, std::uint16_t>> announced;  // row -> columns
        for (;;) {
            const auto r = records.next();
            if (!r) damaged();
            const std::string_view body = r->body;
            const auto length = [&](std::size_t n) {
                if (body.size() != n) damaged();
            };
            switch (r->type) {
                case kEof:
                    length(0);
                    return sheet;
                case kColInfo:
                    length(12);
                    for (std::uint32_t c = get16(body, 0); c <= get16(body, 2) && c < 256; ++c)
                        sheet.widths[static_cast<std::uint16_t>(c)] = get16(body, 4);
                    break;
                case kDimensions:
                    length(14);
                    break;
                case kWindow2:
                    length(18);
                    break;
                case kRow:
                    length(16);
                    announced[get16(body, 0)] = {get16(body, 2), get16(body, 4)};
                    break;
                case kMerged: {
                    const std::size_t n = get16(body, 0);
                    length(2 + n * 8);
                    for (std::size_t k = 0; k < n; ++k)
                        sheet.merges.push_back({get16(body, 2 + k * 8), get16(body, 4 + k * 8),
                                                get16(body, 6 + k * 8), get16(body, 8 + k * 8)});
                    break;
                }
                case kLabelSst:
                case kNumber:
                case kBlank:
                    cell(*r, announced, sheet);
                    break;
                default:
                    damaged();
            }
        }
    }

private:
    void cell(const Rec& r, const std::map<std::uint16_t, std::pair<std::uint16_t, std::uint16_t>>& announced,
              Sheet& sheet) {
        if (r.body.size() != cell_length(r.type)) damaged();
        Cell c;
        const std::uint16_t row = get16(r.body, 0);
        c.col = get16(r.body, 2);
        c.xf = get16(r.body, 4);
        const auto a = announced.find(row);
        if (a == announced.end() || c.col < a->second.first || c.col >= a->second.second) damaged();
        if (seen_ && (row < row_ || (row == row_ && c.col <= col_))) damaged();
        if (r.type == kLabelSst) {
            const std::uint32_t k = get32(r.body, 6);
            if (k >= strings_.size()) damaged();
            c.kind = Cell::Kind::Text;
            c.text = strings_[k];
        } else if (r.type == kNumber) {
            c.kind = Cell::Kind::Number;
            c.number = get_double(r.body, 6);
        }
        seen_ = true;
        row_ = row;
        col_ = c.col;
        if (sheet.rows.empty() || sheet.rows.back().index != row) sheet.rows.push_back({row, {}});
        sheet.rows.back().cells.push_back(std::move(c));
    }

    [[noreturn]] void damaged() const {
        throw Damaged{where_ + " is damaged " +
                      (seen_
                           ? "after row " + std::to_string(row_ + 1) + ", column " + limits::column_name(col_)
                           : std::string("before its first cell"))};
    }

    std::string_view s_;
    const BoundSheet& b_;
    const std::vector<std::string>& strings_;
    std::string where_;
    bool seen_ = false;
    std::uint16_t row_ = 0, col_ = 0;
};

Workbook read_own(std::string_view s, const Framing& framing) {
    Workbook book;
    book.written_here = true;
    std::vector<std::string> strings;
    std::size_t declared = 0;
    Records globals(s, 0, "the workbook's list of sheets");
    globals.next();
    const auto damaged = [](const char* what) { throw Damaged{std::string(what) + " is damaged"}; };
    while (const auto r = globals.next()) {
        if (r->type == kEof) break;
        switch (r->type) {
            case kWriteAccess:
            case kCodepage:
            case kWindow1:
            case kBoundSheet:
            case kExtSst:
                break;
            case kFont:
            case kFormat:
            case kXf:
            case kStyle:
                book.styles.push_back({r->type, std::string(r->body)});
                break;
            case kSst:
            case kContinue: {
                // Strings never run across records here (the writer begins a new one).
                std::size_t p = 0;
                if (r->type == kSst) {
                    declared = get32(r->body, 4);
                    p = 8;
                }
                while (p < r->body.size()) {
                    if (r->body.size() - p < 3) damaged("the workbook's table of shared texts");
                    const std::uint16_t count = get16(r->body, p);
                    p += 2;
                    auto text = chars_of(r->body, p, count);
                    if (!text || strings.size() >= declared) damaged("the workbook's table of shared texts");
                    strings.push_back(std::move(*text));
                }
                break;
            }
            default:
                damaged("the workbook's list of sheets");
        }
    }
    if (strings.size() != declared) damaged("the workbook's table of shared texts");
    for (const auto& b : framing.sheets) book.sheets.push_back(OwnSheet(s, b, strings).read());
    return book;
}

}  // namespace

std::optional<Workbook> read(std::string_view bytes, std::string& damage) {
    damage.clear();
    const auto stream = workbook_stream(bytes, damage);
    if (!stream) return std::nullopt;
    try {
        const Framing framing = check_framing(*stream);
        if (!framing.written_here) return std::nullopt;
        return read_own(*stream, framing);
    } catch (const Damaged& d) {
        damage = d.what;
        return std::nullopt;
    }
}

std::optional<Workbook> read(std::string_view bytes) {
    std::string damage;
    return read(bytes, damage);
}

}  // namespace brenlow::exchange::xls

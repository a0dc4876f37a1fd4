#include "exchange/xls_workbook.h"

#include <algorithm>
#include <cstring>

#include "exchange/xls_bytes.h"

namespace brenlow::exchange::xls {
namespace {

using namespace records;
using bytes::get16;
using bytes::get32;

// Compound File sector marks.
constexpr std::uint32_t kFree = 0xFFFFFFFF, kEndOfChain = 0xFFFFFFFE, kFatSect = 0xFFFFFFFD,
                        kDifSect = 0xFFFFFFFC;
constexpr std::size_t kSector = 512;

void put16(std::string& s, std::uint16_t v) {
    s.push_back(static_cast<char>(v & 0xFF));
    s.push_back(static_cast<char>(v >> 8));
}
void put32(std::string& s, std::uint32_t v) {
    put16(s, static_cast<std::uint16_t>(v & 0xFFFF));
    put16(s, static_cast<std::uint16_t>(v >> 16));
}
void put_double(std::string& s, double d) {
    std::uint64_t bits;
    std::memcpy(&bits, &d, 8);
    put32(s, static_cast<std::uint32_t>(bits));
    put32(s, static_cast<std::uint32_t>(bits >> 32));
}
void record(std::string& out, std::uint16_t type, std::string_view body) {
    put16(out, type);
    put16(out, static_cast<std::uint16_t>(body.size()));
    out.append(body);
}

// A string's characters: one byte each when every character fits in Latin-1, else
// UTF-16; the option byte says which.
void put_chars(std::string& s, const std::u16string& u) {
    const bool wide = std::any_of(u.begin(), u.end(), [](char16_t c) { return c > 0xFF; });
    s.push_back(wide ? 1 : 0);
    for (char16_t c : u) {
        if (wide)
            put16(s, c);
        else
            s.push_back(static_cast<char>(c));
    }
}
// A string with a one-byte length (sheet and font names).
std::string short_string(std::string_view utf8) {
    std::u16string u = utf16_of(utf8);
    if (u.size() > 255) u.resize(255);
    std::string s;
    s.push_back(static_cast<char>(u.size()));
    put_chars(s, u);
    return s;
}
// A string with a two-byte length (number formats, shared strings).
std::string long_string(std::string_view utf8) {
    std::u16string u = utf16_of(utf8);
    if (u.size() > 32767) u.resize(32767);
    std::string s;
    put16(s, static_cast<std::uint16_t>(u.size()));
    put_chars(s, u);
    return s;
}
// Reads a string of `count` characters at `at`: the option byte then the characters.
std::string read_chars(std::string_view s, std::size_t& at, std::size_t count) {
    if (at >= s.size()) return {};
    const bool wide = (s[at++] & 1) != 0;
    std::u16string u;
    for (std::size_t i = 0; i < count && at < s.size(); ++i) {
        if (wide) {
            u.push_back(static_cast<char16_t>(get16(s, at)));
            at += 2;
        } else {
            u.push_back(static_cast<unsigned char>(s[at++]));
        }
    }
    return utf8_of(u);
}

std::string font_body(int height, bool bold) {
    std::string b;
    put16(b, static_cast<std::uint16_t>(height));
    put16(b, bold ? 1 : 0);  // the old bold flag; readers of BIFF8 still look at it
    put16(b, 0x7FFF);        // the window's text colour
    put16(b, bold ? 700 : 400);
    put16(b, 0);
    b.push_back(0);  // no underline
    b.push_back(2);  // swiss family
    b.push_back(0);
    b.push_back(0);
    b += short_string("Arial");
    return b;
}

// One cell format: font, number format, alignment and a thin border when asked.
std::string xf_body(std::uint16_t font, std::uint16_t format, bool style, const CellFormat& f) {
    std::string b;
    put16(b, font);
    put16(b, format);
    put16(b, style ? 0xFFF5 : 0x0001);  // locked; a style format has no parent
    std::uint8_t align = 0x20;          // bottom
    if (f.centred) align |= 0x02;
    if (f.wrap) align |= 0x08;
    b.push_back(static_cast<char>(align));
    b.push_back(0);
    b.push_back(0);
    // Which attributes this format sets rather than takes from its style.
    b.push_back(static_cast<char>(style ? 0xF4 : 0xFC));
    // Borders: thin on every side, default colour (0x40).
    const std::uint32_t lines = f.bordered ? 0x1111u : 0;
    const std::uint32_t colours = f.bordered ? ((0x40u << 16) | (0x40u << 23)) : 0;
    put32(b, lines | colours);
    put32(b, f.bordered ? (0x40u | (0x40u << 7)) : 0);
    put16(b, 0x20C0);  // pattern colours: automatic
    return b;
}

}  // namespace

// ---- text ----

std::u16string utf16_of(std::string_view s) {
    std::u16string u;
    u.reserve(s.size());
    for (std::size_t i = 0; i < s.size();) {
        const unsigned char c = static_cast<unsigned char>(s[i]);
        char32_t cp = 0xFFFD;
        std::size_t n = 1;
        if (c < 0x80) {
            cp = c;
        } else if ((c >> 5) == 6 && i + 1 < s.size()) {
            cp = ((c & 0x1F) << 6) | (s[i + 1] & 0x3F);
            n = 2;
        } else if ((c >> 4) == 14 && i + 2 < s.size()) {
            cp = ((c & 0x0F) << 12) | ((s[i + 1] & 0x3F) << 6) | (s[i + 2] & 0x3F);
            n = 3;
        } else if ((c >> 3) == 30 && i + 3 < s.size()) {
            cp =
                ((c & 0x07) << 18) | ((s[i + 1] & 0x3F) << 12) | ((s[i + 2] & 0x3F) << 6) | (s[i + 3] & 0x3F);
            n = 4;
        }
        i += n;
        if (cp >= 0x10000) {
            cp -= 0x10000;
            u.push_back(static_cast<char16_t>(0xD800 + (cp >> 10)));
            u.push_back(static_cast<char16_t>(0xDC00 + (cp & 0x3FF)));
        } else {
            u.push_back(static_cast<char16_t>(cp));
        }
    }
    return u;
}

std::string utf8_of(std::u16string_view u) {
    std::string s;
    s.reserve(u.size());
    for (std::size_t i = 0; i < u.size(); ++i) {
        char32_t cp = u[i];
        if (cp >= 0xD800 && cp < 0xDC00 && i + 1 < u.size() && u[i + 1] >= 0xDC00 && u[i + 1] < 0xE000)
            cp = 0x10000 + ((cp - 0xD800) << 10) + (u[++i] - 0xDC00);
        if (cp < 0x80) {
            s.push_back(static_cast<char>(cp));
        } else if (cp < 0x800) {
            s.push_back(static_cast<char>(0xC0 | (cp >> 6)));
            s.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
        } else if (cp < 0x10000) {
            s.push_back(static_cast<char>(0xE0 | (cp >> 12)));
            s.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
            s.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
        } else {
            s.push_back(static_cast<char>(0xF0 | (cp >> 18)));
            s.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
            s.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
            s.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
        }
    }
    return s;
}

// ---- styles ----

StyleSheet::StyleSheet() {
    // Fonts 0 to 3 are the workbook's defaults (index 4 is never used); a bold font
    // follows as 5.
    for (int i = 0; i < 4; ++i) fonts_.push_back({kFont, font_body(200, false)});
    fonts_.push_back({kFont, font_body(200, true)});
    for (int i = 0; i < 16; ++i) {
        const std::uint16_t font = (i >= 1 && i <= 4) ? static_cast<std::uint16_t>(i <= 2 ? 1 : 2) : 0;
        xfs_.push_back({kXf, xf_body(font, 0, true, {})});
    }
    add({});  // 15: the default cell format
}

std::uint16_t StyleSheet::add(const CellFormat& f) {
    std::uint16_t format = 0;
    if (f.number_format == "0.00")
        format = 2;
    else if (f.number_format == "0")
        format = 1;
    else if (f.number_format != "General") {
        auto it = format_ids_.find(f.number_format);
        if (it == format_ids_.end()) {
            std::string b;
            put16(b, static_cast<std::uint16_t>(next_format_));
            b += long_string(f.number_format);
            formats_.push_back({kFormat, b});
            it = format_ids_.emplace(f.number_format, static_cast<std::uint16_t>(next_format_++)).first;
        }
        format = it->second;
    }
    xfs_.push_back({kXf, xf_body(f.bold ? 5 : 0, format, false, f)});
    return static_cast<std::uint16_t>(xfs_.size() - 1);
}

std::vector<Record> StyleSheet::records() const {
    std::vector<Record> all = fonts_;
    all.insert(all.end(), formats_.begin(), formats_.end());
    all.insert(all.end(), xfs_.begin(), xfs_.end());
    std::string normal;
    put16(normal, 0x8000);  // built-in style "Normal" on format 0
    normal.push_back(0);
    normal.push_back(static_cast<char>(0xFF));
    all.push_back({kStyle, normal});
    return all;
}

CellFormat format_of(const Workbook& book, std::uint16_t xf) {
    CellFormat f;
    std::vector<const Record*> fonts, xfs;
    std::map<std::uint16_t, std::string> formats = {{1, "0"}, {2, "0.00"}, {3, "#,##0"}, {4, "#,##0.00"}};
    for (const auto& r : book.styles) {
        if (r.type == kFont) fonts.push_back(&r);
        if (r.type == kXf) xfs.push_back(&r);
        if (r.type == kFormat) {
            std::size_t at = 4;
            formats[get16(r.body, 0)] = read_chars(r.body, at, get16(r.body, 2));
        }
    }
    if (xf >= xfs.size()) return f;
    const std::string& b = xfs[xf]->body;
    std::uint16_t font = get16(b, 0);
    if (font >= 4) --font;  // font index 4 is skipped
    if (font < fonts.size()) f.bold = get16(fonts[font]->body, 6) >= 700;
    if (const auto it = formats.find(get16(b, 2)); it != formats.end()) f.number_format = it->second;
    const auto align = static_cast<unsigned char>(b.size() > 6 ? b[6] : 0);
    f.centred = (align & 0x07) == 2;
    f.wrap = (align & 0x08) != 0;
    f.bordered = (get32(b, 10) & 0xFFFF) != 0;
    return f;
}

// ---- writing ----

namespace {

// The shared strings: each text once, numbered in order of first use.
class StringTable {
public:
    std::uint32_t index(const std::string& s) {
        ++total_;
        const auto [it, added] = ids_.emplace(s, static_cast<std::uint32_t>(order_.size()));
        if (added) order_.push_back(&it->first);
        return it->second;
    }
    // SST and its CONTINUE records, a new record begun where a string would not fit;
    // then EXTSST pointing at the first string of every bucket. `out` is the stream
    // from its first byte.
    void write(std::string& out) const {
        const std::size_t per_bucket = std::max<std::size_t>(8, (order_.size() + 999) / 1000);
        std::vector<std::pair<std::uint32_t, std::uint16_t>> buckets;  // stream offset, offset in record
        std::string body;
        put32(body, total_);
        put32(body, static_cast<std::uint32_t>(order_.size()));
        std::uint16_t type = kSst;
        std::size_t record_start = out.size();
        for (std::size_t i = 0; i < order_.size(); ++i) {
            const std::string s = long_string(*order_[i]);
            if (body.size() + s.size() > kMaxBody) {
                record(out, type, body);
                body.clear();
                type = kContinue;
                record_start = out.size();
            }
            if (i % per_bucket == 0)
                buckets.emplace_back(static_cast<std::uint32_t>(record_start + 4 + body.size()),
                                     static_cast<std::uint16_t>(4 + body.size()));
            body += s;
        }
        record(out, type, body);
        std::string ext;
        put16(ext, static_cast<std::uint16_t>(per_bucket));
        for (std::size_t i = 0; i < buckets.size() && ext.size() + 8 <= kMaxBody; ++i) {
            put32(ext, buckets[i].first);
            put16(ext, buckets[i].second);
            put16(ext, 0);
        }
        record(out, kExtSst, ext);
    }

private:
    std::map<std::string, std::uint32_t> ids_;
    std::vector<const std::string*> order_;
    std::uint32_t total_ = 0;
};

std::string bof(std::uint16_t kind) {
    std::string b;
    put16(b, 0x0600);
    put16(b, kind);
    put16(b, 0x0DBB);
    put16(b, 0x07CC);
    put32(b, 0);
    put32(b, 0x06);
    return b;
}

void write_cells(std::string& out, const Row& r, StringTable& strings) {
    std::string b;
    for (const auto& c : r.cells) {
        b.clear();
        put16(b, r.index);
        put16(b, c.col);
        put16(b, c.xf);
        switch (c.kind) {
            case Cell::Kind::Text:
                put32(b, strings.index(c.text));
                record(out, kLabelSst, b);
                break;
            case Cell::Kind::Number:
                put_double(b, c.number);
                record(out, kNumber, b);
                break;
            case Cell::Kind::Blank:
                record(out, kBlank, b);
                break;
        }
    }
}

std::string sheet_stream(const Sheet& sheet, bool first, StringTable& strings) {
    std::string out;
    record(out, kBof, bof(0x0010));
    for (const auto& [col, width] : sheet.widths) {
        std::string b;
        put16(b, col);
        put16(b, col);
        put16(b, width);
        put16(b, 15);
        put16(b, 0);
        put16(b, 0);
        record(out, kColInfo, b);
    }
    std::uint16_t last_col = 0;
    for (const auto& r : sheet.rows)
        if (!r.cells.empty()) last_col = std::max<std::uint16_t>(last_col, r.cells.back().col + 1);
    std::string dim;
    put32(dim, sheet.rows.empty() ? 0 : sheet.rows.front().index);
    put32(dim, sheet.rows.empty() ? 0 : sheet.rows.back().index + 1u);
    put16(dim, 0);
    put16(dim, last_col);
    put16(dim, 0);
    record(out, kDimensions, dim);
    std::string b;
    // Rows go in blocks of 32 as Excel lays them out: the blocks' ROW records, then
    // their cells.
    for (std::size_t block = 0; block < sheet.rows.size(); block += 32) {
        const std::size_t end = std::min(sheet.rows.size(), block + 32);
        for (std::size_t i = block; i < end; ++i) {
            const Row& r = sheet.rows[i];
            b.clear();
            put16(b, r.index);
            put16(b, r.cells.empty() ? 0 : r.cells.front().col);
            put16(b, r.cells.empty() ? 0 : static_cast<std::uint16_t>(r.cells.back().col + 1));
            put16(b, 0x00FF);  // the default height
            put16(b, 0);
            put16(b, 0);
            put16(b, 0x0100);  // a set bit the format asks for; nothing else
            put16(b, 0x000F);
            record(out, kRow, b);
        }
        for (std::size_t i = block; i < end; ++i) write_cells(out, sheet.rows[i], strings);
    }
    std::string w;
    put16(w, first ? 0x06B6 : 0x00B6);
    put16(w, 0);
    put16(w, 0);
    put16(w, 0x40);
    put16(w, 0);
    put16(w, 0);
    put16(w, 0);
    put32(w, 0);
    record(out, kWindow2, w);
    if (!sheet.merges.empty()) {
        std::string m;
        put16(m, static_cast<std::uint16_t>(sheet.merges.size()));
        for (const auto& x : sheet.merges) {
            put16(m, x.first_row);
            put16(m, x.last_row);
            put16(m, x.first_col);
            put16(m, x.last_col);
        }
        record(out, kMerged, m);
    }
    record(out, kEof, {});
    return out;
}

// The workbook stream in a Compound File: the stream's sectors, one directory
// sector, the allocation table and, past 109 table sectors, its extension sectors.
std::string compound_file(std::string stream) {
    if (stream.size() < 4096) stream.resize(4096, '\0');  // below this it would go to the mini stream
    const std::size_t size = stream.size();
    stream.resize((size + kSector - 1) / kSector * kSector, '\0');
    const std::size_t data = stream.size() / kSector;
    std::size_t fat = 1, difat = 0;
    for (;;) {
        difat = fat > 109 ? (fat - 109 + 126) / 127 : 0;
        const std::size_t total = data + 1 + fat + difat;
        const std::size_t need = (total + 127) / 128;
        if (need <= fat) break;
        fat = need;
    }
    const std::size_t dir_at = data, fat_at = data + 1, difat_at = fat_at + fat;
    std::vector<std::uint32_t> table(fat * 128, kFree);
    for (std::size_t i = 0; i < data; ++i)
        table[i] = i + 1 < data ? static_cast<std::uint32_t>(i + 1) : kEndOfChain;
    table[dir_at] = kEndOfChain;
    for (std::size_t i = 0; i < fat; ++i) table[fat_at + i] = kFatSect;
    for (std::size_t i = 0; i < difat; ++i) table[difat_at + i] = kDifSect;

    std::string out;
    out.reserve((1 + data + 1 + fat + difat) * kSector);
    out.append("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8);
    out.append(16, '\0');
    put16(out, 0x003E);
    put16(out, 0x0003);
    put16(out, 0xFFFE);
    put16(out, 9);
    put16(out, 6);
    out.append(6, '\0');
    put32(out, 0);  // directory sectors (none counted in version 3)
    put32(out, static_cast<std::uint32_t>(fat));
    put32(out, static_cast<std::uint32_t>(dir_at));
    put32(out, 0);
    put32(out, 4096);
    put32(out, kEndOfChain);
    put32(out, 0);
    put32(out, difat ? static_cast<std::uint32_t>(difat_at) : kEndOfChain);
    put32(out, static_cast<std::uint32_t>(difat));
    for (std::size_t i = 0; i < 109; ++i)
        put32(out, i < fat ? static_cast<std::uint32_t>(fat_at + i) : kFree);
    out += stream;

    // Directory: the root, the workbook stream, two unused entries.
    const auto entry = [&](std::string_view name, std::uint8_t type, std::uint32_t child, std::uint32_t start,
                           std::uint32_t bytes) {
        std::string e;
        const std::u16string u = utf16_of(name);
        for (char16_t c : u) put16(e, c);
        e.resize(64, '\0');
        put16(e, name.empty() ? 0 : static_cast<std::uint16_t>((u.size() + 1) * 2));
        e.push_back(static_cast<char>(type));
        e.push_back(1);  // black
        put32(e, kFree);
        put32(e, kFree);
        put32(e, child);
        e.append(16 + 4 + 16, '\0');
        put32(e, start);
        put32(e, bytes);
        put32(e, 0);
        out += e;
    };
    entry("Root Entry", 5, 1, kEndOfChain, 0);
    entry("Workbook", 2, kFree, 0, static_cast<std::uint32_t>(size));
    entry("", 0, kFree, 0, 0);
    entry("", 0, kFree, 0, 0);
    for (auto v : table) put32(out, v);
    for (std::size_t d = 0; d < difat; ++d) {
        for (std::size_t i = 0; i < 127; ++i) {
            const std::size_t k = 109 + d * 127 + i;
            put32(out, k < fat ? static_cast<std::uint32_t>(fat_at + k) : kFree);
        }
        put32(out, d + 1 < difat ? static_cast<std::uint32_t>(difat_at + d + 1) : kEndOfChain);
    }
    return out;
}

}  // namespace

std::string write(const Workbook& book) {
    StringTable strings;
    std::vector<std::string> sheets;
    for (std::size_t i = 0; i < book.sheets.size(); ++i)
        sheets.push_back(sheet_stream(book.sheets[i], i == 0, strings));

    std::string globals;
    record(globals, kBof, bof(0x0005));
    std::string access = long_string(kWriter);
    access.resize(112, ' ');
    record(globals, kWriteAccess, access);
    std::string cp;
    put16(cp, 1200);
    record(globals, kCodepage, cp);
    std::string w1;
    for (std::uint16_t v : {0, 0, 0x4000, 0x2800, 0x0038, 0, 0, 1, 0x0258}) put16(w1, v);
    record(globals, kWindow1, w1);
    for (const auto& r : book.styles) record(globals, r.type, r.body);
    std::vector<std::size_t> sheet_offset_at;  // where each BOUNDSHEET's offset sits
    for (const auto& s : book.sheets) {
        std::string b;
        put32(b, 0);
        b.push_back(0);
        b.push_back(0);
        b += short_string(s.name);
        sheet_offset_at.push_back(globals.size() + 4);
        record(globals, kBoundSheet, b);
    }
    strings.write(globals);
    record(globals, kEof, {});

    std::size_t offset = globals.size();
    for (std::size_t i = 0; i < sheets.size(); ++i) {
        std::string pos;
        put32(pos, static_cast<std::uint32_t>(offset));
        globals.replace(sheet_offset_at[i], 4, pos);
        offset += sheets[i].size();
    }
    std::string stream = std::move(globals);
    for (auto& s : sheets) stream += s;
    return compound_file(std::move(stream));
}

}  // namespace brenlow::exchange::xls

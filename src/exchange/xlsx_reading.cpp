// An .xlsx read for import: a zip of XML parts (minizip), each part streamed through
// expat as it unpacks, never held whole. A part may unpack to a bounded size only; a
// part cut short, one whose check sum does not match, and XML that is not well formed
// are refused; every cell reference, shared-text number and text length is checked.

#include <expat.h>
#include <minizip/unzip.h>

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "controls/number_format.h"
#include "controls/vb_date.h"
#include "exchange/sheet_limits.h"
#include "exchange/sheet_readers.h"

namespace brenlow::exchange {
namespace {

// The number a cell of kind "n" holds: a typed amount's text, or the exponent form
// spreadsheet programs write ("1.5E-3"); never hexadecimal, "inf" or "nan", and never
// one past the range of a double.
std::optional<double> xlsx_number(std::string_view t) {
    if (const auto v = parse_amount(t)) return v;
    std::size_t i = 0;
    const auto digits = [&] {
        const std::size_t from = i;
        while (i < t.size() && t[i] >= '0' && t[i] <= '9') ++i;
        return i - from;
    };
    if (i < t.size() && t[i] == '-') ++i;
    std::size_t n = digits();
    if (i < t.size() && t[i] == '.') {
        ++i;
        n += digits();
    }
    if (n == 0 || i >= t.size() || (t[i] != 'E' && t[i] != 'e')) return std::nullopt;
    ++i;
    if (i < t.size() && (t[i] == '+' || t[i] == '-')) ++i;
    if (digits() == 0 || i != t.size()) return std::nullopt;
    double v = 0;
    const auto r = std::from_chars(t.data(), t.data() + t.size(), v);
    if (r.ec != std::errc() || r.ptr != t.data() + t.size() || !std::isfinite(v)) return std::nullopt;
    return v;
}

// An XML part read element by element as its bytes arrive; names lose their namespace
// prefix. A handler that finds the part past a limit stops the parse with its reason.
class XmlReader {
public:
    virtual ~XmlReader() = default;
    XmlReader() : p_(XML_ParserCreate("UTF-8"), XML_ParserFree) {
        XML_SetUserData(p_.get(), this);
        XML_SetElementHandler(
            p_.get(),
            [](void* self, const XML_Char* name, const XML_Char** attrs) {
                auto* r = static_cast<XmlReader*>(self);
                if (++r->depth_ > kDepth) return r->stop("it nests deeper than a workbook does");
                r->start(local(name), attrs);
            },
            [](void* self, const XML_Char* name) {
                auto* r = static_cast<XmlReader*>(self);
                --r->depth_;
                r->end(local(name));
            });
        XML_SetCharacterDataHandler(p_.get(), [](void* self, const XML_Char* s, int len) {
            static_cast<XmlReader*>(self)->text(std::string_view(s, static_cast<std::size_t>(len)));
        });
        // No part of a workbook declares a document type: nothing gets to define entities.
        XML_SetStartDoctypeDeclHandler(
            p_.get(), [](void* self, const XML_Char*, const XML_Char*, const XML_Char*, int) {
                static_cast<XmlReader*>(self)->stop("it declares a document type");
            });
    }
    // Takes the next bytes of the part; false once it is refused (`refusal` says why,
    // empty when the XML is not well formed).
    bool feed(std::string_view bytes, bool last) {
        if (!refusal_.empty()) return false;
        const auto s = XML_Parse(p_.get(), bytes.data(), static_cast<int>(bytes.size()), last ? 1 : 0);
        return s == XML_STATUS_OK && refusal_.empty();
    }
    const std::string& refusal() const { return refusal_; }

protected:
    virtual void start(std::string_view name, const char** attrs) = 0;
    virtual void end(std::string_view name) = 0;
    virtual void text(std::string_view) {}

    void stop(std::string why) {
        if (refusal_.empty()) refusal_ = std::move(why);
        XML_StopParser(p_.get(), XML_FALSE);
    }
    bool stopped() const { return !refusal_.empty(); }

    static const char* attr(const char** attrs, std::string_view name) {
        for (int i = 0; attrs[i]; i += 2)
            if (local(attrs[i]) == name) return attrs[i + 1];
        return nullptr;
    }

private:
    static constexpr int kDepth = 64;
    static std::string_view local(const char* name) {
        const char* colon = std::strrchr(name, ':');
        return colon ? colon + 1 : name;
    }
    std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> p_;
    int depth_ = 0;
    std::string refusal_;
};

// xl/workbook.xml: sheet names and their relationship ids.
struct WorkbookPart : XmlReader {
    std::vector<std::pair<std::string, std::string>> sheets;
    void start(std::string_view name, const char** a) override {
        const char *n = attr(a, "name"), *id = attr(a, "id");
        if (name != "sheet" || !n || !id) return;
        if (sheets.size() == limits::kSheets)
            return stop("it has more than " + std::to_string(limits::kSheets) + " sheets");
        sheets.emplace_back(n, id);
    }
    void end(std::string_view) override {}
};

struct RelsPart : XmlReader {
    std::map<std::string, std::string> targets;
    void start(std::string_view name, const char** a) override {
        const char *id = attr(a, "Id"), *target = attr(a, "Target");
        if (name == "Relationship" && id && target) targets[id] = target;
    }
    void end(std::string_view) override {}
};

// Text gathered for one cell or shared text, stopped past the longest a cell holds.
bool grow(std::string& into, std::string_view s) {
    into.append(s);
    return into.size() <= limits::kCellChars * 4 || char_count(into) <= limits::kCellChars;
}

// xl/sharedStrings.xml: each <si>'s text runs joined (phonetic runs left out).
struct StringsPart : XmlReader {
    std::vector<std::string> strings;
    bool in_t = false, in_phonetic = false;
    void start(std::string_view name, const char**) override {
        if (name == "si") strings.emplace_back();
        if (name == "rPh") in_phonetic = true;
        if (name == "t") in_t = !in_phonetic;
    }
    void end(std::string_view name) override {
        if (name == "t") in_t = false;
        if (name == "rPh") in_phonetic = false;
    }
    void text(std::string_view s) override {
        if (!in_t || strings.empty() || stopped()) return;
        if (!grow(strings.back(), s))
            stop("its shared text " + std::to_string(strings.size()) + " is longer than " +
                 std::to_string(limits::kCellChars) + " characters");
    }
};

// "AB12" -> column 27 (from 0), row 12: one to three letters, then a row number.
enum class Ref { Cell, Malformed, PastColumns, PastRows };
Ref cell_ref(std::string_view ref, long& col, long& row) {
    std::size_t i = 0;
    col = 0;
    for (; i < ref.size() && ref[i] >= 'A' && ref[i] <= 'Z'; ++i)
        if (i < 4) col = col * 26 + (ref[i] - 'A' + 1);
    const std::size_t letters = i;
    row = 0;
    const std::size_t from = i;
    for (; i < ref.size() && ref[i] >= '0' && ref[i] <= '9'; ++i)
        if (row <= limits::kRows) row = row * 10 + (ref[i] - '0');
    if (letters == 0 || i == from || i != ref.size() || row == 0) return Ref::Malformed;
    --col;
    if (letters > 3 || col >= limits::kColumns) return Ref::PastColumns;
    if (row > limits::kRows) return Ref::PastRows;
    return Ref::Cell;
}

struct SheetPart : XmlReader {
    const std::vector<std::string>& strings;
    SheetBuilder& sheet;
    long row = 0, col = -1, next_col = 0;
    std::string type, value;
    bool in_v = false, in_t = false;
    SheetPart(const std::vector<std::string>& s, SheetBuilder& out) : strings(s), sheet(out) {}
    std::string in_sheet() const { return "the sheet \"" + sheet.name() + "\""; }

    void start(std::string_view name, const char** a) override {
        if (name == "row") {
            if (const char* r = attr(a, "r")) {
                long c = 0;
                const std::string shown = std::string(r).substr(0, 16);
                const Ref got = cell_ref("A" + std::string(r), c, row);
                if (got == Ref::PastRows)
                    return stop(in_sheet() + " has a row " + shown + " past the last row " +
                                std::to_string(limits::kRows));
                if (got != Ref::Cell)
                    return stop(in_sheet() + " has a row \"" + shown + "\" that is no row number");
            } else if (++row > limits::kRows) {
                return stop(in_sheet() + " has a row past the last row " + std::to_string(limits::kRows));
            }
            next_col = 0;
        } else if (name == "c") {
            col = next_col;
            if (const char* ref = attr(a, "r")) {
                const std::string shown = std::string(ref).substr(0, 16);
                switch (cell_ref(ref, col, row)) {
                    case Ref::Cell:
                        break;
                    case Ref::Malformed:
                        return stop(in_sheet() + " has a cell \"" + shown +
                                    "\" that names no row and column");
                    case Ref::PastColumns:
                        return stop(in_sheet() + " has a cell \"" + shown + "\" past the last column " +
                                    limits::column_name(limits::kColumns - 1));
                    case Ref::PastRows:
                        return stop(in_sheet() + " has a cell \"" + shown + "\" past the last row " +
                                    std::to_string(limits::kRows));
                }
            } else if (col >= limits::kColumns) {
                return stop(sheet.where(row, col) + " is past the last column " +
                            limits::column_name(limits::kColumns - 1));
            }
            if (row == 0) row = 1;
            next_col = col + 1;
            const char* t = attr(a, "t");
            type = t ? t : "n";
            value.clear();
        } else if (name == "v") {
            in_v = true;
        } else if (name == "t" && type == "inlineStr") {
            in_t = true;
        }
    }
    void end(std::string_view name) override {
        if (name == "v") in_v = false;
        if (name == "t") in_t = false;
        if (name != "c" || col < 0 || stopped()) return;
        SheetValue v;
        if (type == "s") {
            std::size_t k = 0;
            const auto r = std::from_chars(value.data(), value.data() + value.size(), k);
            if (value.empty() || r.ec != std::errc() || r.ptr != value.data() + value.size() ||
                k >= strings.size())
                return stop(sheet.where(row, col) + " refers to a shared text the workbook does not have");
            v = SheetValue::of(strings[k]);
        } else if (type == "str" || type == "inlineStr" || type == "e") {
            v = SheetValue::of(value);
        } else if (type == "n") {
            // A number that does not read as one stays text: the entry rules refuse it
            // in the column it stands in.
            const auto n = xlsx_number(value);
            v = n ? SheetValue::of(*n) : SheetValue::of(value);
        } else if (type == "d") {
            int y = 0, m = 0, d = 0;
            if (std::sscanf(value.c_str(), "%d-%d-%d", &y, &m, &d) == 3 && Date::valid(y, m, d))
                v = {SheetValue::Kind::Date, static_cast<double>(Date{y, m, d}.serial() + 25569), {}};
            else
                v = SheetValue::of(value);
        } else if (type == "b") {
            v = SheetValue::of(value == "1" ? "TRUE" : "FALSE");
        } else {
            v = SheetValue::of(value);
        }
        std::string error;
        if (v.kind != SheetValue::Kind::Empty && !sheet.put(row, col, std::move(v), error))
            return stop(error);
        col = -1;
    }
    void text(std::string_view s) override {
        if ((!in_v && !in_t) || stopped()) return;
        if (!grow(value, s))
            stop(sheet.where(row, col) + " holds more than " + std::to_string(limits::kCellChars) +
                 " characters");
    }
};

// The parts of the zip, each unpacked through a reader as it comes.
class Zip {
public:
    Zip(unzFile z, std::uint64_t cap) : z_(z), cap_(cap) {}

    enum class Got { Read, Missing, Refused };
    Got part(const std::string& name, XmlReader& reader, std::string& error) {
        if (unzLocateFile(z_, name.c_str(), 2) != UNZ_OK) return Got::Missing;
        const std::string shown = "its part \"" + name + "\"";
        unz_file_info64 info{};
        if (unzGetCurrentFileInfo64(z_, &info, nullptr, 0, nullptr, 0, nullptr, 0) != UNZ_OK ||
            unzOpenCurrentFile(z_) != UNZ_OK) {
            error = shown + " cannot be unpacked";
            return Got::Refused;
        }
        if (info.uncompressed_size > cap_) {
            unzCloseCurrentFile(z_);
            error = shown + " would unpack to more than " + std::to_string(cap_) +
                    " bytes, more than a workbook of this size holds";
            return Got::Refused;
        }
        std::uint64_t total = 0;
        char buf[65536];
        for (;;) {
            const int n = unzReadCurrentFile(z_, buf, sizeof buf);
            if (n < 0) {
                unzCloseCurrentFile(z_);
                error = shown + " is damaged";
                return Got::Refused;
            }
            total += static_cast<std::uint64_t>(n);
            if (!reader.feed(std::string_view(buf, static_cast<std::size_t>(n)), n == 0)) {
                unzCloseCurrentFile(z_);
                error = reader.refusal().empty() ? shown + " is damaged: its XML is not well formed"
                                                 : reader.refusal();
                return Got::Refused;
            }
            if (n == 0) break;
        }
        // Closing checks the unpacked bytes against the part's check sum.
        const int closed = unzCloseCurrentFile(z_);
        if (total != info.uncompressed_size) {
            error = shown + " is cut short";
            return Got::Refused;
        }
        if (closed != UNZ_OK) {
            error = shown + " is damaged: its check sum does not match";
            return Got::Refused;
        }
        return Got::Read;
    }

private:
    unzFile z_;
    std::uint64_t cap_;
};

}  // namespace

std::optional<std::vector<SheetCells>> read_xlsx_file(const std::string& path, std::string& error) {
    std::error_code ec;
    const auto size = std::filesystem::file_size(path, ec);
    if (ec) {
        error = "the file cannot be read";
        return std::nullopt;
    }
    if (size > limits::kFileBytes) {
        error = "it is larger than " + std::to_string(limits::kFileBytes >> 20) + " MiB";
        return std::nullopt;
    }
    unzFile handle = unzOpen64(path.c_str());
    if (!handle) {
        error = "it is not an Excel workbook (.xlsx)";
        return std::nullopt;
    }
    std::unique_ptr<void, int (*)(unzFile)> guard(handle, unzClose);
    Zip zip(handle, static_cast<std::uint64_t>(size) * limits::kUnpackRatio + limits::kUnpackFloor);
    WorkbookPart book;
    RelsPart rels;
    for (auto [name, reader] : {std::pair<const char*, XmlReader*>{"xl/workbook.xml", &book},
                                {"xl/_rels/workbook.xml.rels", &rels}}) {
        const auto got = zip.part(name, *reader, error);
        if (got == Zip::Got::Refused) return std::nullopt;
        if (got == Zip::Got::Missing) {
            error = "it is not an Excel workbook (.xlsx)";
            return std::nullopt;
        }
    }
    StringsPart strings;
    if (zip.part("xl/sharedStrings.xml", strings, error) == Zip::Got::Refused) return std::nullopt;
    std::vector<SheetCells> sheets;
    for (const auto& [name, id] : book.sheets) {
        SheetBuilder sheet(name);
        const auto t = rels.targets.find(id);
        if (t == rels.targets.end()) {
            error = "the sheet \"" + name + "\" is missing";
            return std::nullopt;
        }
        const std::string target = t->second.rfind('/', 0) == 0 ? t->second.substr(1) : "xl/" + t->second;
        SheetPart part(strings.strings, sheet);
        const auto got = zip.part(target, part, error);
        if (got == Zip::Got::Refused) return std::nullopt;
        if (got == Zip::Got::Missing) {
            error = "the sheet \"" + name + "\" is missing";
            return std::nullopt;
        }
        sheets.push_back(sheet.finish());
    }
    return sheets;
}

}  // namespace brenlow::exchange

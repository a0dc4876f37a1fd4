#include "exchange/register_document.h"

#include <cmath>
#include <functional>
#include <istream>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>

#include "controls/utf8_text.h"
#include "controls/vb_date.h"
#include "exchange/register_import.h"
#include "register/entry_rules.h"
#include "store/client_code.h"
#include "store/register_bulk.h"
#include "store/register_store.h"
#include "store/text_limits.h"

namespace brenlow::exchange {
namespace {

using Json = nlohmann::ordered_json;
enum class Kind { text, number, whole, date };
struct Field {
    const char* name;
    Kind kind;
};

// Columns of each table in their stored order.
const std::vector<Field> kGroupFields = {
    {"SrNoFAGM", Kind::whole}, {"Yr", Kind::whole},       {"Part", Kind::text},
    {"BlockIdIT", Kind::text}, {"RateIT", Kind::number},  {"AddlRateIT", Kind::number},
    {"BlockFA", Kind::whole},  {"RateFA", Kind::number},  {"BlockIdCL", Kind::text},
    {"LifeYrs", Kind::number}, {"RateSLM", Kind::number}, {"RateWDV", Kind::number}};
const std::vector<Field> kOpeningFields = {
    {"Code_No", Kind::text},   {"SrNoFATR", Kind::whole},   {"IdFAGM", Kind::whole},
    {"Part", Kind::text},      {"CostWdv", Kind::number},   {"OpDepr", Kind::number},
    {"YrCalcCA", Kind::whole}, {"DepCalcCA", Kind::number}, {"ResValue", Kind::number},
    {"LifeYrs", Kind::number}, {"RateFACL", Kind::number},  {"WdvIT", Kind::number},
    {"DetESA", Kind::text},    {"RateIT", Kind::number},    {"AddlDepRT", Kind::number},
    {"SaleDate", Kind::date},  {"SaleAmt", Kind::number},   {"SaleExp", Kind::number},
    {"ShiftDet", Kind::text},  {"DepFACL", Kind::number},   {"OthOpts", Kind::text},
    {"PutDate", Kind::date},   {"AddlDepOn", Kind::number}};
const std::vector<Field> kAdditionFields = {
    {"Code_No", Kind::text},    {"SrNoFATR", Kind::whole},  {"IdFAGM", Kind::whole},
    {"Part", Kind::text},       {"PutDate", Kind::date},    {"AccDate", Kind::date},
    {"PurAmt", Kind::number},   {"ExciseCr", Kind::number}, {"CurrDiff", Kind::number},
    {"Subsidy", Kind::number},  {"ResValue", Kind::number}, {"LifeYrs", Kind::number},
    {"RateFACL", Kind::number}, {"RateIT", Kind::number},   {"AddlDepRT", Kind::number},
    {"SaleDate", Kind::date},   {"SaleAmt", Kind::number},  {"SaleExp", Kind::number},
    {"ShiftDet", Kind::text},   {"DepFACL", Kind::number},  {"OthOpts", Kind::text}};
const std::vector<Field> kManualFields = {
    {"Code_No", Kind::text}, {"Yr", Kind::whole}, {"IdFAGM", Kind::whole}, {"DepAmt", Kind::number}};
const std::vector<Field> kOptionFields = {
    {"Code_No", Kind::text}, {"Yr", Kind::whole}, {"MiscInf", Kind::text}};

Json num(double v) {
    // Whole amounts read back as whole numbers; others keep every digit.
    if (std::isfinite(v) && v == std::floor(v) && std::fabs(v) < 1e15) return static_cast<long long>(v);
    return v;
}

Json group_json(const store::AssetGroupRow& g) {
    return Json{{"SrNoFAGM", g.SrNoFAGM},
                {"Yr", g.Yr},
                {"Part", g.Part},
                {"BlockIdIT", g.BlockIdIT},
                {"RateIT", num(g.RateIT)},
                {"AddlRateIT", num(g.AddlRateIT)},
                {"BlockFA", g.BlockFA},
                {"RateFA", num(g.RateFA)},
                {"BlockIdCL", g.BlockIdCL},
                {"LifeYrs", num(g.LifeYrs)},
                {"RateSLM", num(g.RateSLM)},
                {"RateWDV", num(g.RateWDV)}};
}

Json opening_json(const store::OpeningRow& o) {
    return Json{{"Code_No", o.Code_No},
                {"SrNoFATR", o.SrNoFATR},
                {"IdFAGM", o.IdFAGM},
                {"Part", o.Part},
                {"CostWdv", num(o.CostWdv)},
                {"OpDepr", num(o.OpDepr)},
                {"YrCalcCA", o.YrCalcCA},
                {"DepCalcCA", num(o.DepCalcCA)},
                {"ResValue", num(o.ResValue)},
                {"LifeYrs", num(o.LifeYrs)},
                {"RateFACL", num(o.RateFACL)},
                {"WdvIT", num(o.WdvIT)},
                {"DetESA", o.DetESA},
                {"RateIT", num(o.RateIT)},
                {"AddlDepRT", num(o.AddlDepRT)},
                {"SaleDate", o.SaleDate},
                {"SaleAmt", num(o.SaleAmt)},
                {"SaleExp", num(o.SaleExp)},
                {"ShiftDet", o.ShiftDet},
                {"DepFACL", num(o.DepFACL)},
                {"OthOpts", o.OthOpts},
                {"PutDate", o.PutDate},
                {"AddlDepOn", num(o.AddlDepOn)}};
}

Json addition_json(const store::AdditionRow& a) {
    return Json{{"Code_No", a.Code_No},
                {"SrNoFATR", a.SrNoFATR},
                {"IdFAGM", a.IdFAGM},
                {"Part", a.Part},
                {"PutDate", a.PutDate},
                {"AccDate", a.AccDate},
                {"PurAmt", num(a.PurAmt)},
                {"ExciseCr", num(a.ExciseCr)},
                {"CurrDiff", num(a.CurrDiff)},
                {"Subsidy", num(a.Subsidy)},
                {"ResValue", num(a.ResValue)},
                {"LifeYrs", num(a.LifeYrs)},
                {"RateFACL", num(a.RateFACL)},
                {"RateIT", num(a.RateIT)},
                {"AddlDepRT", num(a.AddlDepRT)},
                {"SaleDate", a.SaleDate},
                {"SaleAmt", num(a.SaleAmt)},
                {"SaleExp", num(a.SaleExp)},
                {"ShiftDet", a.ShiftDet},
                {"DepFACL", num(a.DepFACL)},
                {"OthOpts", a.OthOpts}};
}

constexpr double kWholeMin = -2147483648.0;
constexpr double kWholeMax = 2147483647.0;

// Characters a text column holds.
std::size_t text_limit(std::string_view column) {
    if (column == "Part") return store::kNameChars;
    if (column == "Code_No" || column == "BlockIdIT" || column == "BlockIdCL") return store::kCodeChars;
    if (column.find("Date") != std::string_view::npos) return store::kDateChars;
    return store::kLongTextChars;
}

// A value as a message shows it: JSON text, cut short when long.
std::string shown(const Json& v) {
    std::string t = v.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    if (utf8_length(t) > 60) t = utf8_prefix(t, 57) + "...";
    return t;
}

// Checks one row object against its table's columns; a missing column takes its
// empty value.
class RowReader {
public:
    RowReader(const Json& row, std::string table, std::size_t index, const std::vector<Field>& fields,
              std::vector<std::string>& errors)
        : row_(row), where_(table + " row " + std::to_string(index + 1)), fields_(fields), errors_(errors) {
        if (!row_.is_object()) {
            fail("", "expected an object of columns, found " + shown(row_));
            return;
        }
        for (const auto& [key, value] : row_.items()) {
            bool known = false;
            for (const auto& f : fields_) known = known || key == f.name;
            if (!known) fail(key, "is not a column of this table");
        }
    }

    std::string text(const char* name) {
        const Json* v = get(name);
        if (!v || v->is_null()) return {};
        if (!v->is_string()) {
            fail(name, "expected text, found " + shown(*v));
            return {};
        }
        std::string t = v->get<std::string>();
        if (const auto fault = store::text_fault(t, text_limit(name))) fail(name, "the text " + *fault);
        return t;
    }
    // A client code, when the row names one, follows the client codes' rule.
    void client_code(const char* name) {
        const std::size_t before = errors_.size();
        const std::string t = text(name);
        if (t.empty() || errors_.size() != before) return;
        if (const auto fault = store::client_code_fault(t)) fail(name, *fault);
    }
    std::string date(const char* name) {
        const std::size_t before = errors_.size();
        std::string t = text(name);
        if (!t.empty() && errors_.size() == before) {
            const auto d = Date::parse(t);
            if (!d || t.size() != 10) fail(name, "expected a date dd/mm/yyyy, found \"" + t + "\"");
        }
        return t;
    }
    double number(const char* name) {
        const Json* v = get(name);
        if (!v || v->is_null()) return 0;
        if (!v->is_number()) {
            fail(name, "expected a number, found " + shown(*v));
            return 0;
        }
        const double d = v->get<double>();
        if (!std::isfinite(d)) fail(name, "expected a finite number");
        return d;
    }
    long whole(const char* name) {
        const double d = number(name);
        // Whole-number columns are Int(11): anything outside never reaches a long.
        if (d != std::floor(d) || d < kWholeMin || d > kWholeMax) {
            fail(name, "expected a whole number from -2147483648 to 2147483647, found " + shown(*get(name)));
            return 0;
        }
        return static_cast<long>(d);
    }
    void fail(const std::string& field, const std::string& what) {
        errors_.push_back(where_ + (field.empty() ? "" : ", field " + field) + ": " + what);
    }
    bool ok() const { return errors_.size() == errors_at_start_; }

private:
    const Json* get(const char* name) const {
        if (!row_.is_object()) return nullptr;
        const auto it = row_.find(name);
        return it == row_.end() ? nullptr : &*it;
    }

    const Json& row_;
    std::string where_;
    const std::vector<Field>& fields_;
    std::vector<std::string>& errors_;
    std::size_t errors_at_start_ = errors_.size();
};

const Json& table_of(const Json& doc, const char* name, std::vector<std::string>& errors) {
    static const Json empty = Json::array();
    const auto it = doc.find(name);
    if (it == doc.end() || it->is_null()) return empty;
    if (!it->is_array()) {
        errors.push_back(std::string(name) + ": expected a list of rows");
        return empty;
    }
    return *it;
}

// The columns of an opening row, in the order its errors are told.
store::OpeningRow read_opening(RowReader& r) {
    store::OpeningRow o;
    r.client_code("Code_No");
    r.whole("SrNoFATR");
    o.IdFAGM = r.whole("IdFAGM");
    o.Part = r.text("Part");
    o.CostWdv = r.number("CostWdv");
    o.OpDepr = r.number("OpDepr");
    o.YrCalcCA = r.whole("YrCalcCA");
    o.DepCalcCA = r.number("DepCalcCA");
    o.ResValue = r.number("ResValue");
    o.LifeYrs = r.number("LifeYrs");
    o.RateFACL = r.number("RateFACL");
    o.WdvIT = r.number("WdvIT");
    o.DetESA = r.text("DetESA");
    o.RateIT = r.number("RateIT");
    o.AddlDepRT = r.number("AddlDepRT");
    o.SaleDate = r.date("SaleDate");
    o.SaleAmt = r.number("SaleAmt");
    o.SaleExp = r.number("SaleExp");
    o.ShiftDet = r.text("ShiftDet");
    o.DepFACL = r.number("DepFACL");
    o.OthOpts = r.text("OthOpts");
    o.PutDate = r.date("PutDate");
    o.AddlDepOn = r.number("AddlDepOn");
    if (o.Part.empty()) r.fail("Part", "the particulars are empty");
    return o;
}

store::AdditionRow read_addition(RowReader& r) {
    store::AdditionRow a;
    r.client_code("Code_No");
    r.whole("SrNoFATR");
    a.IdFAGM = r.whole("IdFAGM");
    a.Part = r.text("Part");
    a.PutDate = r.date("PutDate");
    a.AccDate = r.date("AccDate");
    a.PurAmt = r.number("PurAmt");
    a.ExciseCr = r.number("ExciseCr");
    a.CurrDiff = r.number("CurrDiff");
    a.Subsidy = r.number("Subsidy");
    a.ResValue = r.number("ResValue");
    a.LifeYrs = r.number("LifeYrs");
    a.RateFACL = r.number("RateFACL");
    a.RateIT = r.number("RateIT");
    a.AddlDepRT = r.number("AddlDepRT");
    a.SaleDate = r.date("SaleDate");
    a.SaleAmt = r.number("SaleAmt");
    a.SaleExp = r.number("SaleExp");
    a.ShiftDet = r.text("ShiftDet");
    a.DepFACL = r.number("DepFACL");
    a.OthOpts = r.text("OthOpts");
    if (a.Part.empty()) r.fail("Part", "the particulars are empty");
    return a;
}

// The rows of one register table as they are read: packed, with what their columns
// said (the asset group is checked once every group of the document is known).
template <class RowT>
struct ReadTable {
    ReadTable(const char* table, const std::vector<Field>& columns, RowT (*reader)(RowReader&))
        : name(table), fields(&columns), read(reader) {}

    const char* name;
    const std::vector<Field>* fields;
    RowT (*read)(RowReader&);
    PackedRows<RowT> rows;
    std::vector<bool> read_cleanly;
    std::vector<long> groups;                                 // IdFAGM of each row
    std::vector<std::pair<std::size_t, std::string>> errors;  // row, error, in order

    void clear() { *this = ReadTable(name, *fields, read); }
    void add(std::size_t index, const Json& row) {
        std::vector<std::string> found;
        RowReader r(row, name, index, *fields, found);
        const RowT entry = read(r);
        read_cleanly.push_back(found.empty());
        groups.push_back(entry.IdFAGM);
        rows.push_back(entry);
        for (auto& e : found) errors.emplace_back(index, std::move(e));
    }
    // The errors of every row in row order, each row's own ending with its group's.
    template <class Known>
    void tell(std::vector<std::string>& out, const Known& group_known) {
        std::size_t next = 0;
        for (std::size_t i = 0; i < rows.size(); ++i) {
            for (; next < errors.size() && errors[next].first == i; ++next)
                out.push_back(std::move(errors[next].second));
            if (!group_known(groups[i])) {
                out.push_back(std::string(name) + " row " + std::to_string(i + 1) +
                              ", field IdFAGM: no asset group " + std::to_string(groups[i]));
                read_cleanly[i] = false;
            }
        }
        errors.clear();
    }
};

// Builds the document as the library's own reader would, except the rows of the two
// register tables: each goes to `row` as soon as it is whole and is not kept, so that
// a register of any size is read in the room of one row. The tables themselves stay
// in the document as empty lists.
class StreamingReader {
public:
    enum Table { none = -1, openings = 0, additions = 1 };
    using RowFn = std::function<void(Table, std::size_t index, const Json& row)>;
    using TableFn = std::function<void(Table)>;  // a table (again): forget its rows so far

    StreamingReader(RowFn row, TableFn table) : row_(std::move(row)), table_(std::move(table)) {}
    Json& document() { return root_; }
    // Where and how the text stopped being JSON: a parse error has its byte.
    bool failed() const { return failed_; }
    std::optional<std::size_t> failed_at() const { return failed_at_; }

    bool null() { return value(nullptr); }
    bool boolean(bool v) { return value(v); }
    bool number_integer(Json::number_integer_t v) { return value(v); }
    bool number_unsigned(Json::number_unsigned_t v) { return value(v); }
    bool number_float(Json::number_float_t v, const Json::string_t&) { return value(v); }
    bool string(Json::string_t& v) { return value(v); }
    bool binary(Json::binary_t& v) { return value(std::move(v)); }
    bool start_object(std::size_t) {
        stack_.push_back(place(Json(Json::value_t::object)));
        return true;
    }
    bool key(Json::string_t& k) {
        element_ = &(*stack_.back())[k];
        pending_ = none;
        if (stack_.size() == 1) {
            pending_ = k == "NewFATRo" ? openings : k == "NewFATRa" ? additions : none;
            if (pending_ != none) table_(pending_);
        }
        return true;
    }
    bool end_object() { return close(); }
    bool start_array(std::size_t) {
        const bool table = stack_.size() == 1 && pending_ != none;
        stack_.push_back(place(Json(Json::value_t::array)));
        if (table) {
            streaming_ = pending_;
            index_ = 0;
        }
        return true;
    }
    bool end_array() {
        if (streaming_ != none && stack_.size() == 2) streaming_ = none;  // the table's own list
        return close();
    }
    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& ex) {
        failed_ = true;
        if (const auto* pe = dynamic_cast<const nlohmann::json::parse_error*>(&ex)) failed_at_ = pe->byte;
        return false;
    }

private:
    bool in_table() const { return streaming_ != none && stack_.size() == 2; }
    // Puts a value where the text has it: the root, a row being read, a list or a member.
    Json* place(Json v) {
        if (stack_.empty()) {
            root_ = std::move(v);
            return &root_;
        }
        if (in_table()) {
            row_value_ = std::move(v);
            return &row_value_;
        }
        Json& parent = *stack_.back();
        if (parent.is_array()) {
            parent.push_back(std::move(v));
            return &parent.back();
        }
        *element_ = std::move(v);
        return element_;
    }
    template <class V>
    bool value(V&& v) {
        const bool row = in_table();
        place(Json(std::forward<V>(v)));
        if (row) emit();
        return true;
    }
    bool close() {
        stack_.pop_back();
        if (in_table()) emit();
        return true;
    }
    void emit() {
        row_(streaming_, index_++, row_value_);
        row_value_ = Json();
    }

    RowFn row_;
    TableFn table_;
    Json root_;
    Json row_value_;
    std::vector<Json*> stack_;
    Json* element_ = nullptr;
    Table pending_ = none;
    Table streaming_ = none;
    std::size_t index_ = 0;
    bool failed_ = false;
    std::optional<std::size_t> failed_at_;
};

// Where the document's text comes from: the parser reads it once; only when it is not
// JSON is it read again from the start, to tell an empty text or one that is not UTF-8.
struct DocumentText {
    std::function<void(StreamingReader&)> parse;
    std::function<bool()> blank;
    std::function<bool()> utf8;
};

ImportResult import_document(store::Database& db, const std::string& code, int year, const DocumentText& text,
                             const ImportOptions& options);

std::string fy_text(long year) {
    return std::to_string(year - 1) + "-" + std::to_string(100 + year % 100).substr(1);
}

}  // namespace

void export_register(store::Database& db, const std::string& code, int year, const TextSink& out) {
    // Text cut inside a character by an older version is still in some databases:
    // the broken bytes come out as U+FFFD rather than stopping the whole export.
    const auto dumped = [](const Json& v) {
        return v.dump(2, ' ', false, nlohmann::json::error_handler_t::replace);
    };
    // The document is written as one two-space indented dump of it would print it, a
    // row at a time: each table is a member of the top object, each row an element
    // of its list, four spaces in.
    std::string piece;
    const auto table = [&](const char* name, const auto& each_row) {
        piece = std::string(",\n  \"") + name + "\": [";
        bool any = false;
        each_row([&](const Json& row) {
            piece += any ? ",\n    " : "\n    ";
            any = true;
            for (const char c : dumped(row)) {
                piece += c;
                if (c == '\n') piece += "    ";
            }
            out(piece);
            piece.clear();
        });
        piece += any ? "\n  ]" : "]";
        out(piece);
    };
    store::RegisterStore reg(db, code, year);
    out("{\n  \"format\": \"brenlow-register\",\n  \"version\": 2,\n  \"client\": " + dumped(Json(code)) +
        ",\n  \"year\": " + std::to_string(year));
    table("NewFAGM", [&](const auto& put) {
        for (const auto& g : reg.asset_groups()) put(group_json(g));
    });
    table("NewFATRo", [&](const auto& put) {
        reg.for_each_opening(std::nullopt, [&](store::OpeningRow&& o) { put(opening_json(o)); });
    });
    table("NewFATRa", [&](const auto& put) {
        reg.for_each_addition(std::nullopt, [&](store::AdditionRow&& a) { put(addition_json(a)); });
    });
    table("NewFAMI", [&](const auto& put) {
        if (const auto mi = reg.options_row()) put(Json{{"Code_No", code}, {"Yr", year}, {"MiscInf", *mi}});
    });
    // Version 2 carries the depreciation typed in by hand per group; version 1 did not.
    table("NewFAMD", [&](const auto& put) {
        for (const auto& [group, amount] : reg.manual_depreciation())
            put(Json{{"Code_No", code}, {"Yr", year}, {"IdFAGM", group}, {"DepAmt", num(amount)}});
    });
    out("\n}\n");
}

std::string export_register(store::Database& db, const std::string& code, int year) {
    std::string text;
    export_register(db, code, year, [&text](std::string_view piece) { text += piece; });
    return text;
}

namespace {

// Reads `in` from its start, a piece at a time, until `each` says stop (false).
bool each_piece(std::istream& in, const std::function<bool(std::string_view)>& each) {
    in.clear();
    in.seekg(0);
    std::vector<char> buffer(std::size_t{1} << 16);
    while (in.read(buffer.data(), static_cast<std::streamsize>(buffer.size())) || in.gcount() > 0)
        if (!each(std::string_view(buffer.data(), static_cast<std::size_t>(in.gcount())))) return false;
    return true;
}

bool blank_text(std::string_view t) {
    return t.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

}  // namespace

ImportResult import_register(store::Database& db, const std::string& code, int year, const std::string& json,
                             const ImportOptions& options) {
    DocumentText text;
    text.parse = [&json](StreamingReader& reader) {
        Json::sax_parse(json, &reader, Json::input_format_t::json, true, false);
    };
    text.blank = [&json] { return blank_text(json); };
    text.utf8 = [&json] { return is_valid_utf8(json); };
    return import_document(db, code, year, text, options);
}

ImportResult import_register(store::Database& db, const std::string& code, int year, std::istream& json,
                             const ImportOptions& options) {
    DocumentText text;
    text.parse = [&json](StreamingReader& reader) {
        Json::sax_parse(json, &reader, Json::input_format_t::json, true, false);
    };
    text.blank = [&json] { return each_piece(json, blank_text); };
    text.utf8 = [&json] {
        // A character cut between two pieces is carried over to the next.
        std::string carry;
        const bool whole = each_piece(json, [&carry](std::string_view piece) {
            carry.append(piece);
            std::size_t end = carry.size();
            for (std::size_t back = 1; back <= 3 && back <= carry.size(); ++back) {
                const auto c = static_cast<unsigned char>(carry[carry.size() - back]);
                if ((c & 0xC0) != 0x80) {
                    // The start of the last character: keep it back if it is not complete.
                    const std::size_t need = c >= 0xF0 ? 4 : c >= 0xE0 ? 3 : c >= 0xC0 ? 2 : 1;
                    if (need > back) end = carry.size() - back;
                    break;
                }
            }
            if (!is_valid_utf8(std::string_view(carry).substr(0, end))) return false;
            carry.erase(0, end);
            return true;
        });
        return whole && is_valid_utf8(carry);
    };
    return import_document(db, code, year, text, options);
}

namespace {

ImportResult import_document(store::Database& db, const std::string& code, int year, const DocumentText& text,
                             const ImportOptions& options) {
    ImportResult result;
    if (const auto fault = store::client_code_fault(code)) {
        result.errors.push_back(*fault);
        return result;
    }
    ReadTable<store::OpeningRow> o_table{"NewFATRo", kOpeningFields, read_opening};
    ReadTable<store::AdditionRow> a_table{"NewFATRa", kAdditionFields, read_addition};
    StreamingReader reader(
        [&](StreamingReader::Table t, std::size_t index, const Json& row) {
            if (t == StreamingReader::openings)
                o_table.add(index, row);
            else
                a_table.add(index, row);
        },
        [&](StreamingReader::Table t) {
            if (t == StreamingReader::openings)
                o_table.clear();
            else
                a_table.clear();
        });
    text.parse(reader);
    if (reader.failed()) {
        // The library's own text is for its developers; the person gets where it broke.
        if (const auto byte = reader.failed_at()) {
            if (text.blank()) {
                result.errors.push_back("Not a JSON document: it is empty");
            } else if (!text.utf8()) {
                result.errors.push_back("Not a JSON document: it is not UTF-8 text (near byte " +
                                        std::to_string(*byte) + ")");
            } else {
                result.errors.push_back("Not a JSON document: it stops being JSON near byte " +
                                        std::to_string(*byte));
            }
        } else {
            // Numbers beyond a double (1e309) are the only other thing the reader refuses.
            result.errors.push_back("Not a JSON document: it holds a number too large for any amount");
        }
        return result;
    }
    const Json& doc = reader.document();
    const auto format = doc.is_object() ? doc.find("format") : doc.end();
    if (!doc.is_object() || format == doc.end() || !format->is_string() || *format != "brenlow-register") {
        result.errors.push_back("Not a register document: \"format\" must be \"brenlow-register\"");
        return result;
    }
    auto& errors = result.errors;
    store::RegisterStore reg(db, code, year);

    // Groups: by name within the target year.
    std::map<long, store::AssetGroupRow> doc_groups;
    const Json& groups = table_of(doc, "NewFAGM", errors);
    for (std::size_t i = 0; i < groups.size(); ++i) {
        RowReader r(groups[i], "NewFAGM", i, kGroupFields, errors);
        store::AssetGroupRow g;
        g.SrNoFAGM = r.whole("SrNoFAGM");
        g.Yr = year;
        r.whole("Yr");
        g.Part = r.text("Part");
        g.BlockIdIT = r.text("BlockIdIT");
        g.RateIT = r.number("RateIT");
        g.AddlRateIT = r.number("AddlRateIT");
        g.BlockFA = r.whole("BlockFA");
        g.RateFA = r.number("RateFA");
        g.BlockIdCL = r.text("BlockIdCL");
        g.LifeYrs = r.number("LifeYrs");
        g.RateSLM = r.number("RateSLM");
        g.RateWDV = r.number("RateWDV");
        if (g.Part.empty()) r.fail("Part", "the asset group needs a name");
        if (doc_groups.count(g.SrNoFAGM)) r.fail("SrNoFAGM", "appears twice");
        if (r.ok()) doc_groups[g.SrNoFAGM] = g;
    }
    std::map<long, bool> existing_ids;
    for (const auto& g : reg.asset_groups()) existing_ids[g.SrNoFAGM] = true;
    auto group_known = [&](long id) { return doc_groups.count(id) > 0 || existing_ids.count(id) > 0; };

    // The register tables' rows were read as the text went by; their errors are told here,
    // in the document's order of tables.
    table_of(doc, "NewFATRo", errors);
    o_table.tell(errors, group_known);
    table_of(doc, "NewFATRa", errors);
    a_table.tell(errors, group_known);
    std::optional<std::string> misc_inf;
    const Json& mi_rows = table_of(doc, "NewFAMI", errors);
    for (std::size_t i = 0; i < mi_rows.size(); ++i) {
        RowReader r(mi_rows[i], "NewFAMI", i, kOptionFields, errors);
        r.client_code("Code_No");
        r.whole("Yr");
        const std::string mi = r.text("MiscInf");
        if (i > 0) r.fail("", "a client's year has one options row");
        if (r.ok()) misc_inf = mi;
    }
    std::vector<std::pair<long, double>> manual;
    const bool has_manual = doc.contains("NewFAMD");
    const Json& md_rows = table_of(doc, "NewFAMD", errors);
    for (std::size_t i = 0; i < md_rows.size(); ++i) {
        RowReader r(md_rows[i], "NewFAMD", i, kManualFields, errors);
        r.client_code("Code_No");
        r.whole("Yr");
        const long group = r.whole("IdFAGM");
        const double amount = r.number("DepAmt");
        // -1: a row of no group.
        if (group != -1 && !group_known(group)) r.fail("IdFAGM", "no asset group " + std::to_string(group));
        if (r.ok()) manual.emplace_back(group, amount);
    }

    // Dates are not rewritten: another year's register is taken only when asked for.
    if (const auto y = doc.find("year");
        y != doc.end() && y->is_number_integer() && y->get<long>() != year && !options.yes)
        errors.push_back("The document is the register of F.Y. " + fy_text(y->get<long>()) +
                         ", not of F.Y. " + fy_text(year) +
                         "; its dates are not rewritten (--yes imports it all the same)");

    RegisterData data;
    data.groups = std::move(doc_groups);
    data.openings = std::move(o_table.rows);
    data.opening_read = std::move(o_table.read_cleanly);
    data.additions = std::move(a_table.rows);
    data.addition_read = std::move(a_table.read_cleanly);
    data.misc_inf = std::move(misc_inf);
    data.has_manual = has_manual;
    data.manual = std::move(manual);
    const FindingPlace place = [](reg::EntrySide side, std::size_t index, reg::EntryField field) {
        return std::string(side == reg::EntrySide::Opening ? "NewFATRo" : "NewFATRa") + " row " +
               std::to_string(index + 1) + ", field " + reg::column_of(field, side);
    };
    return check_and_write(db, code, year, std::move(data), options, place, std::move(errors));
}

}  // namespace

}  // namespace brenlow::exchange

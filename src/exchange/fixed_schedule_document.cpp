#include "exchange/fixed_schedule_document.h"

#include "controls/vb_date.h"

namespace brenlow::exchange {
namespace {

using Json = nlohmann::ordered_json;

// Reads the fields of one row, noting the first fault of each field.
class Fields {
public:
    Fields(const Json& row, std::string where, std::vector<std::string>& errors)
        : row_(row), where_(std::move(where)), errors_(errors) {
        if (!row_.is_object()) fail("", "a row is an object of columns");
    }
    double number(const char* name) {
        if (!row_.is_object() || !row_.contains(name) || row_[name].is_null()) return 0;
        if (!row_[name].is_number()) {
            fail(name, "is not a number");
            return 0;
        }
        return row_[name].get<double>();
    }
    long whole(const char* name) {
        const double v = number(name);
        if (v != static_cast<double>(static_cast<long>(v))) fail(name, "is not a whole number");
        return static_cast<long>(v);
    }
    std::string text(const char* name) {
        if (!row_.is_object() || !row_.contains(name) || row_[name].is_null()) return {};
        if (!row_[name].is_string()) {
            fail(name, "is not text");
            return {};
        }
        return row_[name].get<std::string>();
    }
    std::string date(const char* name) {
        const std::string t = text(name);
        if (!t.empty() && !Date::parse(t)) fail(name, "\"" + t + "\" is not a date dd/mm/yyyy");
        return t;
    }
    void fail(const std::string& field, const std::string& why) {
        errors_.push_back(where_ + (field.empty() ? "" : ", field " + field) + ": " + why);
    }

private:
    const Json& row_;
    std::string where_;
    std::vector<std::string>& errors_;
};

}  // namespace

void write_fixed_schedule(Json& doc, const store::FixedScheduleRows& rows) {
    Json fixed = Json::array(), fda = Json::array();
    for (const auto& f : rows.fixed)
        fixed.push_back({{"compit_id", f.compit_id},
                         {"srno", f.srno},
                         {"ref_id", f.ref_id},
                         {"PART_NM", f.PART_NM},
                         {"OP_BAL", f.OP_BAL},
                         {"op_bal_dep", f.op_bal_dep},
                         {"RATE_DEP", f.RATE_DEP},
                         {"method_id", f.method_id},
                         {"OTH_DEP", f.OTH_DEP},
                         {"deptick", f.deptick},
                         {"depamt", f.depamt},
                         {"CGrpId", f.CGrpId},
                         {"wdv", f.wdv},
                         {"compit_rate", f.compit_rate},
                         {"IGrpId", f.IGrpId},
                         {"trblock", f.trblock},
                         {"AddDepRt", f.AddDepRt}});
    for (const auto& a : rows.fda)
        fda.push_back({{"srno", a.srno},
                       {"ad_ded_id", a.ad_ded_id},
                       {"ref_id", a.ref_id},
                       {"particular", a.particular},
                       {"cost", a.cost},
                       {"excr", a.excr},
                       {"curdiff", a.curdiff},
                       {"grsub", a.grsub},
                       {"AMT", a.AMT},
                       {"ad_date", a.ad_date},
                       {"dtpur", a.dtpur},
                       {"dep", a.dep},
                       {"fulldep", a.fulldep},
                       {"src", a.src},
                       {"adddepapp", a.adddepapp}});
    doc["FIXED_"] = std::move(fixed);
    doc["FDA_"] = std::move(fda);
}

store::FixedScheduleRows read_fixed_schedule(const Json& doc, std::vector<std::string>& errors) {
    store::FixedScheduleRows rows;
    const std::size_t before = errors.size();
    const auto table = [&](const char* name) -> const Json& {
        static const Json empty = Json::array();
        if (!doc.contains(name)) return empty;
        if (!doc[name].is_array()) {
            errors.push_back(std::string(name) + ": a table is a list of rows");
            return empty;
        }
        return doc[name];
    };
    const Json& fixed = table("FIXED_");
    for (std::size_t i = 0; i < fixed.size(); ++i) {
        Fields r(fixed[i], "FIXED_ row " + std::to_string(i + 1), errors);
        if (!fixed[i].is_object()) continue;
        store::FixedRow f;
        f.compit_id = r.whole("compit_id");
        f.srno = r.whole("srno");
        f.ref_id = r.whole("ref_id");
        f.PART_NM = r.text("PART_NM");
        f.OP_BAL = r.number("OP_BAL");
        f.op_bal_dep = r.number("op_bal_dep");
        f.RATE_DEP = r.number("RATE_DEP");
        f.method_id = r.whole("method_id");
        if (f.method_id < 0 || f.method_id > 4) r.fail("method_id", "is not a method 1 to 4");
        f.OTH_DEP = r.number("OTH_DEP");
        f.deptick = r.whole("deptick");
        f.depamt = r.number("depamt");
        f.CGrpId = r.whole("CGrpId");
        f.wdv = r.number("wdv");
        f.compit_rate = r.number("compit_rate");
        f.IGrpId = r.whole("IGrpId");
        f.trblock = r.whole("trblock");
        f.AddDepRt = r.number("AddDepRt");
        rows.fixed.push_back(std::move(f));
    }
    const Json& fda = table("FDA_");
    for (std::size_t i = 0; i < fda.size(); ++i) {
        Fields r(fda[i], "FDA_ row " + std::to_string(i + 1), errors);
        if (!fda[i].is_object()) continue;
        store::FdaRow a;
        a.srno = r.whole("srno");
        a.ad_ded_id = static_cast<int>(r.whole("ad_ded_id"));
        if (a.ad_ded_id != 1 && a.ad_ded_id != 2 && a.ad_ded_id != 3 && a.ad_ded_id != 100)
            r.fail("ad_ded_id", "is not 1 (addition), 2 (deduction), 3 (carried half) or 100 (marker)");
        a.ref_id = r.whole("ref_id");
        a.particular = r.text("particular");
        a.cost = r.number("cost");
        a.excr = r.number("excr");
        a.curdiff = r.number("curdiff");
        a.grsub = r.number("grsub");
        a.AMT = r.number("AMT");
        a.ad_date = r.date("ad_date");
        a.dtpur = r.date("dtpur");
        a.dep = r.number("dep");
        a.fulldep = r.whole("fulldep");
        a.src = r.whole("src");
        a.adddepapp = r.text("adddepapp");
        rows.fda.push_back(std::move(a));
    }
    if (errors.size() != before) return {};
    return rows;
}

}  // namespace brenlow::exchange

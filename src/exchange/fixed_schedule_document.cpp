#include "exchange/fixed_schedule_document.h"

#include "exchange/document_checks.h"
#include "store/text_limits.h"

namespace brenlow::exchange {
using Json = nlohmann::ordered_json;

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
    static const std::vector<std::string> fixed_columns = {
        "compit_id", "srno",        "ref_id",  "PART_NM", "OP_BAL",  "op_bal_dep",
        "RATE_DEP",  "method_id",   "OTH_DEP", "deptick", "depamt",  "CGrpId",
        "wdv",       "compit_rate", "IGrpId",  "trblock", "AddDepRt"};
    static const std::vector<std::string> fda_columns = {
        "srno", "ad_ded_id", "ref_id", "particular", "cost",    "excr", "curdiff",  "grsub",
        "AMT",  "ad_date",   "dtpur",  "dep",        "fulldep", "src",  "adddepapp"};
    store::FixedScheduleRows rows;
    const std::size_t before = errors.size();
    const auto table = [&](const char* name) -> const Json& {
        static const Json empty = Json::array();
        if (!doc.contains(name)) return empty;
        if (!doc[name].is_array()) {
            errors.push_back(std::string(name) + ": a table is a list of rows, not " + shown(doc[name]));
            return empty;
        }
        return doc[name];
    };
    const Json& fixed = table("FIXED_");
    for (std::size_t i = 0; i < fixed.size(); ++i) {
        RowFields r(fixed[i], "FIXED_ row " + std::to_string(i + 1), fixed_columns, errors);
        if (!r.is_row()) continue;
        store::FixedRow f;
        f.compit_id = r.whole("compit_id");
        f.srno = r.whole("srno");
        f.ref_id = r.whole("ref_id");
        f.PART_NM = r.text("PART_NM", store::kNameChars);
        f.OP_BAL = r.amount("OP_BAL");
        f.op_bal_dep = r.amount("op_bal_dep");
        f.RATE_DEP = r.amount("RATE_DEP");
        f.method_id = r.whole("method_id");
        if (f.method_id < 0 || f.method_id > 4) r.fail("method_id", "is not a method 1 to 4");
        f.OTH_DEP = r.amount("OTH_DEP");
        f.deptick = r.whole("deptick");
        f.depamt = r.amount("depamt");
        f.CGrpId = r.whole("CGrpId");
        f.wdv = r.amount("wdv");
        f.compit_rate = r.amount("compit_rate");
        f.IGrpId = r.whole("IGrpId");
        f.trblock = r.whole("trblock");
        f.AddDepRt = r.amount("AddDepRt");
        rows.fixed.push_back(std::move(f));
    }
    const Json& fda = table("FDA_");
    for (std::size_t i = 0; i < fda.size(); ++i) {
        RowFields r(fda[i], "FDA_ row " + std::to_string(i + 1), fda_columns, errors);
        if (!r.is_row()) continue;
        store::FdaRow a;
        a.srno = r.whole("srno");
        a.ad_ded_id = static_cast<int>(r.whole("ad_ded_id"));
        if (a.ad_ded_id != 1 && a.ad_ded_id != 2 && a.ad_ded_id != 3 && a.ad_ded_id != 100)
            r.fail("ad_ded_id", "is not 1 (addition), 2 (deduction), 3 (carried half) or 100 (marker)");
        a.ref_id = r.whole("ref_id");
        a.particular = r.text("particular", store::kNameChars);
        a.cost = r.amount("cost");
        a.excr = r.amount("excr");
        a.curdiff = r.amount("curdiff");
        a.grsub = r.amount("grsub");
        a.AMT = r.amount("AMT");
        a.ad_date = r.date("ad_date");
        a.dtpur = r.date("dtpur");
        a.dep = r.amount("dep");
        a.fulldep = r.whole("fulldep");
        a.src = r.whole("src");
        a.adddepapp = r.text("adddepapp", store::kCodeChars);
        rows.fda.push_back(std::move(a));
    }
    if (errors.size() != before) return {};
    return rows;
}

store::FixedScheduleRows read_fixed_schedule_document(const std::string& text,
                                                      std::vector<std::string>& errors) {
    const auto doc = parse_document(text, errors);
    if (!doc) return {};
    static const DocumentShape shape{
        "brenlow-fixed-schedule", "fixed-asset schedule", 1, {"FIXED_", "FDA_"}, {}};
    if (!check_document_shape(*doc, shape, errors)) return {};
    return read_fixed_schedule(*doc, errors);
}

}  // namespace brenlow::exchange

#include "suite/base_services.h"

#include "controls/number_format.h"
#include "controls/vb_date.h"
#include "store/client_code.h"
#include "store/seed.h"

namespace brenlow::suite {

namespace {
constexpr const char* kPracticeSection = "Practice";
constexpr const char* kDigitGroupingKey = "DigitGrouping";
}  // namespace

BaseServices::BaseServices(std::unique_ptr<store::Database> db, std::string exe_path, std::string data_dir)
    : db_(std::move(db)), exe_path_(std::move(exe_path)), data_dir_(std::move(data_dir)) {
    store::ensure_schema(*db_, data_dir_);
    set_digit_grouping(digit_grouping_named(GetSettingINI(kPracticeSection, kDigitGroupingKey, ""))
                           .value_or(DigitGrouping::indian));
}

void BaseServices::SetDigitGrouping(DigitGrouping grouping) {
    store::set_setting(*db_, kPracticeSection, kDigitGroupingKey,
                       grouping == DigitGrouping::indian ? "Indian" : "Western");
    set_digit_grouping(grouping);
}

bool BaseServices::select_client_year(const std::string& code, int year) {
    // Refuses a code no client can have, with the reason, rather than "not found".
    auto cy = store::find_client_year(*db_, store::client_code(code), year);
    if (!cy) return false;
    current_ = std::move(cy);
    return true;
}

store::CreatedYear BaseServices::create_client_year(const std::string& code, int year,
                                                    const std::string& name, std::optional<int> status) {
    auto created = store::create_client_year(*db_, code, year, name, status);
    current_ = created.client_year;
    return created;
}

bool BaseServices::CheckDllsVersion(bool caller_ok) {
    // The component and these services are built together; a caller that says it
    // is compatible is.
    return caller_ok;
}

std::string BaseServices::FirstDate() const {
    return current_ ? fy_first(current_->year).text() : std::string();
}
std::string BaseServices::SecondDate() const {
    return current_ ? fy_last(current_->year).text() : std::string();
}

int BaseServices::PYrInd() const {
    if (!current_) return 0;
    const auto prev = store::find_client_year(*db_, current_->code_no, current_->year - 1);
    return prev ? prev->count : 0;
}

long BaseServices::dat_diff(std::string_view from, std::string_view to) const {
    const auto a = Date::parse(from), b = Date::parse(to);
    if (!a || !b) return 0;
    return days_between(*a, *b);
}

std::string BaseServices::ConvertDate(std::string_view text) const {
    const auto d = Date::parse(text);
    return d ? d->text() : std::string();
}

std::string BaseServices::Excel_ImportXlDate(double serial) const {
    // Spreadsheet day numbers count from 30/12/1899 (day 1 is 31/12/1899 once the
    // spreadsheet's phantom 29/02/1900 is allowed for).
    const Date base{1899, 12, 30};
    return base.add_days(static_cast<int>(serial)).text();
}

std::string BaseServices::FormatTarrow(double value, int kind) const {
    switch (kind) {
        case 0:
            return format_mask(value, "###0");
        case 2:
            return format_mask(value, "#,##0.00");
        case 3:
            return format_mask(value, "#,##0");
        default:
            return format_mask(value, "###0.00");
    }
}

std::string BaseServices::GetMiscOthInf(std::string_view key, std::string_view second_date,
                                        std::string_view code) {
    return store::get_misc_info(*db_, code, second_date, key);
}

void BaseServices::SetMiscOthInf(std::string_view key, std::string_view value, std::string_view second_date,
                                 std::string_view code, std::string_view description) {
    store::set_misc_info(*db_, code, second_date, key, value, description);
}

std::string BaseServices::GetFASetupVars(std::string_view key, std::string_view code,
                                         std::string_view second_date) {
    return store::get_misc_info(*db_, code, second_date, std::string("FASETUP:") + std::string(key));
}

std::string BaseServices::GetSettingINI(std::string_view section, std::string_view key,
                                        std::string_view default_value) {
    return store::get_setting(*db_, section, key, default_value);
}

bool BaseServices::CheckOptedOldDeprChart() {
    return current_ && GetMiscOthInf("OLDDEPCHART", SecondDate(), Temp_Code()) == "1";
}

bool BaseServices::flag(std::string_view regime) {
    return current_ &&
           GetMiscOthInf(std::string("REGIME") + std::string(regime), SecondDate(), Temp_Code()) == "1";
}

}  // namespace brenlow::suite

#pragma once
// The suite's own base services over one database connection: the default
// TarrowBase.ClsMain. The host opens the database and chooses the client and
// financial year; the component's screens read them from here.

#include <memory>
#include <optional>
#include <string>

#include "controls/number_format.h"
#include "store/client_store.h"
#include "suite/tarrow_base.h"

namespace brenlow::suite {

class BaseServices : public TarrowBase::ClsMain {
public:
    // Takes the connection; creates the shared tables and seeds the masters.
    BaseServices(std::unique_ptr<store::Database> db, std::string exe_path, std::string data_dir);

    // Chooses the open client and year (the year must exist: see create_client_year).
    // Returns false when the client has no such year; throws store::BadClientCode for
    // a code no client can have (see store/client_code.h).
    bool select_client_year(const std::string& code, int year);
    // Creates the client's year when missing, then selects it.
    store::CreatedYear create_client_year(const std::string& code, int year, const std::string& name,
                                          std::optional<int> status);
    const std::optional<store::ClientYear>& client_year() const { return current_; }
    // Calendar year in which the open financial year ends; 0 when none is open.
    int year() const { return current_ ? current_->year : 0; }

    bool CheckDllsVersion(bool caller_ok) override;
    store::Database& dbobj() override { return *db_; }
    store::Recordset RecordsetQuery(std::string_view sql) override { return db_->query(sql); }
    void ConQuery(std::string_view sql) override { db_->execute(sql); }
    std::string TruncVarSQL(std::string_view text) const override { return store::sql_text(text); }

    std::string Temp_Code() const override { return current_ ? current_->code_no : std::string(); }
    std::string FirstDate() const override;
    std::string SecondDate() const override;
    int TSTATUS() const override { return current_ ? current_->status : 0; }
    int PYrInd() const override;
    int CYrInd() const override { return current_ ? current_->count : 0; }

    int GetTbCount() override { return store::table_count(*db_); }
    std::string GetTbName(int index) override { return store::table_suffix(*db_, index); }

    long dat_diff(std::string_view from, std::string_view to) const override;
    std::string ConvertDate(std::string_view text) const override;
    std::string ConvertToSave(std::string_view text) const override { return ConvertDate(text); }
    std::string Excel_ImportXlDate(double serial) const override;
    std::string FormatTarrow(double value, int kind) const override;

    std::string GetMiscOthInf(std::string_view key, std::string_view second_date,
                              std::string_view code) override;
    void SetMiscOthInf(std::string_view key, std::string_view value, std::string_view second_date,
                       std::string_view code, std::string_view description) override;
    std::string GetFASetupVars(std::string_view key, std::string_view code,
                               std::string_view second_date) override;
    std::string GetSettingINI(std::string_view section, std::string_view key,
                              std::string_view default_value) override;
    bool CheckOptedOldDeprChart() override;

    long GetMax_MastPartId(std::string_view name) override { return store::mast_part_id(*db_, name); }
    std::string GetPart_MastPartId(long id) override { return store::mast_part_name(*db_, id); }

    int vStatus_Read() override { return TSTATUS(); }
    bool vFlagCompDom115BA() override { return flag("115BA"); }
    bool vFlagIndHUF115BAC() override { return flag("115BAC"); }
    bool vFlagCopSoc115BAD() override { return flag("115BAD"); }
    bool vFlagCopSoc115BAE() override { return flag("115BAE"); }

    // The practice's grouping of digits in amounts (a suite setting), applied at once.
    void SetDigitGrouping(DigitGrouping grouping);

    std::string ExePath() const override { return exe_path_; }
    const std::string& data_dir() const { return data_dir_; }

private:
    bool flag(std::string_view regime);

    std::unique_ptr<store::Database> db_;
    std::string exe_path_;
    std::string data_dir_;
    std::optional<store::ClientYear> current_;
};

}  // namespace brenlow::suite

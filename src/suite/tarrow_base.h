#pragma once
// TarrowBase.ClsMain — the suite's base services: the connection, the current client
// and financial year, SQL utilities, dates, client settings and table-name lookup.
// Member names are the suite's own.

#include <string>
#include <string_view>

#include "store/database.h"

namespace brenlow::TarrowBase {

class ClsMain {
public:
    virtual ~ClsMain() = default;

    virtual bool CheckDllsVersion(bool caller_ok) = 0;

    // Connection and statements.
    virtual store::Database& dbobj() = 0;
    virtual store::Recordset RecordsetQuery(std::string_view sql) = 0;
    virtual void ConQuery(std::string_view sql) = 0;
    virtual std::string TruncVarSQL(std::string_view text) const = 0;

    // The client and financial year the suite has open.
    virtual std::string Temp_Code() const = 0;
    virtual std::string FirstDate() const = 0;   // dd/mm/yyyy
    virtual std::string SecondDate() const = 0;  // dd/mm/yyyy
    virtual int TSTATUS() const = 0;             // client status 1-4
    virtual int PYrInd() const = 0;              // Count of the previous year, 0 when none
    virtual int CYrInd() const = 0;              // Count of the open year

    // Per-year table sets: suffix of the year numbered `index` (1..GetTbCount).
    virtual int GetTbCount() = 0;
    virtual std::string GetTbName(int index) = 0;

    // Dates.
    virtual long dat_diff(std::string_view from, std::string_view to) const = 0;
    virtual std::string ConvertDate(
        std::string_view text) const = 0;  // typed form -> dd/mm/yyyy, "" if not a date
    virtual std::string ConvertToSave(std::string_view text) const = 0;  // to the stored dd/mm/yyyy
    virtual std::string Excel_ImportXlDate(double serial) const = 0;
    virtual std::string FormatTarrow(double value, int kind) const = 0;

    // Client settings kept in the database, per client and year (the year given by
    // the closing date of the financial year).
    virtual std::string GetMiscOthInf(std::string_view key, std::string_view second_date,
                                      std::string_view code) = 0;
    virtual void SetMiscOthInf(std::string_view key, std::string_view value, std::string_view second_date,
                               std::string_view code, std::string_view description) = 0;
    virtual std::string GetFASetupVars(std::string_view key, std::string_view code,
                                       std::string_view second_date) = 0;
    virtual std::string GetSettingINI(std::string_view section, std::string_view key,
                                      std::string_view default_value) = 0;
    virtual bool CheckOptedOldDeprChart() = 0;

    // Trial-balance particulars.
    virtual long GetMax_MastPartId(std::string_view name) = 0;  // id for a name, created when missing
    virtual std::string GetPart_MastPartId(long id) = 0;

    // Assessee status and the concessional-regime flags.
    virtual int vStatus_Read() = 0;
    virtual bool vFlagCompDom115BA() = 0;
    virtual bool vFlagIndHUF115BAC() = 0;
    virtual bool vFlagCopSoc115BAD() = 0;
    virtual bool vFlagCopSoc115BAE() = 0;

    // The program folder (error log, templates).
    virtual std::string ExePath() const = 0;
};

}  // namespace brenlow::TarrowBase

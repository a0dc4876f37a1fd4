#pragma once
// Kestbase.Forms — the base forms object: the fixed-asset set-up variables and the
// date checks the register uses.

#include <string>
#include <string_view>

namespace brenlow::Kestbase {

class Forms {
public:
    virtual ~Forms() = default;
    // Loads the fixed-asset set-up of the open client and year.
    virtual void GetSetup() = 0;
    virtual std::string setupvars(std::string_view name) = 0;
    virtual void SetSetupVars(std::string_view name, std::string_view value) = 0;
    // Compares two dd/mm/yyyy dates: -1 when a is earlier, 0 when equal, 1 when later.
    virtual int comp_dt(std::string_view a, std::string_view b) const = 0;
    // True when the addition date lies within the open financial year.
    virtual bool Check_AdDt(std::string_view date) const = 0;
    // Days from put-to-use to the end of the open year, the date-based determination
    // of the register; `what` 1 = days used in the year, 2 = 1 when used 180 days or more.
    virtual long deter(std::string_view put_date, std::string_view year_end, int what) const = 0;
    // How many times GetSetup has run (the schedules screen relies on it being fresh).
    virtual int setup_loads() const = 0;
};

}  // namespace brenlow::Kestbase

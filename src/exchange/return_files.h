#pragma once
// The return's files of the client's year open in the base services, as the desktop's
// chart preview writes them from its Export menu: the depreciation schedules of the
// income-tax return, and clause 18 of the tax audit report as the utility's JSON, its
// two CSVs and the print. Each is checked whole before a byte is written and written
// whole or not at all.

#include <stdexcept>
#include <string>

#include "suite/output_file.h"
#include "suite/tarrow_base.h"

namespace brenlow::exchange {

// The checks refused the figures (or the year has no known schema); what() holds each
// refusal on its own line, and nothing was written.
class ReturnRefused : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

void write_itr_schedules_file(TarrowBase::ClsMain& base, const std::string& path, suite::Existing existing);
void write_clause18_json_file(TarrowBase::ClsMain& base, const std::string& path, suite::Existing existing);
// clause18-additions.csv and clause18-deductions.csv in the folder.
void write_clause18_csv_files(TarrowBase::ClsMain& base, const std::string& folder, suite::Existing existing);
void write_clause18_pdf_file(TarrowBase::ClsMain& base, const std::string& path, suite::Existing existing);

}  // namespace brenlow::exchange

#pragma once
// A printed chart as a workbook (the print's target "EXCEL"): the print's titles, its
// banded headings and one row per printed line, amounts as numbers in the print's
// masks ("#,##0" for whole rupees, "#,##0.00" otherwise), bold where the print is
// bold. The documents printed after it (the block-wise summary) go to sheets of their
// own.

#include <string>

#include "exchange/xls_workbook.h"
#include "suite/report.h"

namespace brenlow::exchange {

// `sheet` names the first sheet ("Income-Tax Chart", "Books Chart").
xls::Workbook report_workbook(const Ostikreport::ReportDocument& doc, const std::string& sheet);

}  // namespace brenlow::exchange

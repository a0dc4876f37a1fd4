// Writes the register's template workbooks into each folder named on the command
// line: AssetWiseDepChartCompv2.19.9.xls (companies) and AssetWiseDepChartOth.xls.

#include <filesystem>
#include <iostream>

#include "exchange/register_workbook.h"
#include "suite/output_file.h"

int main(int argc, char** argv) {
    try {
        for (int i = 1; i < argc; ++i) {
            std::filesystem::create_directories(argv[i]);
            for (const bool company : {true, false})
                brenlow::suite::write_file_whole(
                    brenlow::exchange::template_path(std::filesystem::path(argv[i]).parent_path().string(),
                                                     company),
                    brenlow::exchange::xls::write(brenlow::exchange::register_template(company)),
                    // Made again by every build.
                    brenlow::suite::Existing::replace);
        }
    } catch (const std::exception& e) {
        std::cerr << "brenlow_templates: " << e.what() << "\n";
        return 1;
    }
    return 0;
}

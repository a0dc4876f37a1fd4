#pragma once
// What the workbook fuzzers share: the input written to a file of the kind (the readers
// open files) and the readers' promise checked on what comes back.

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "exchange/sheet_limits.h"
#include "exchange/spreadsheet_files.h"

namespace brenlow::fuzz {

inline void read_as_workbook(const std::uint8_t* data, std::size_t size, const char* ext) {
    namespace fs = std::filesystem;
    static const fs::path file = (fs::exists("/dev/shm") ? fs::path("/dev/shm") : fs::temp_directory_path()) /
                                 ("brenlow-fuzz-" + std::to_string(::getpid()) + ext);
    {
        std::ofstream out(file, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }
    std::string error;
    const auto sheets = exchange::read_spreadsheet(file.string(), error);
    // Either every sheet within the limits, or a refusal that says why.
    if (!sheets) {
        if (error.empty()) std::abort();
        return;
    }
    if (sheets->size() > exchange::limits::kSheets) std::abort();
    for (const auto& s : *sheets) {
        if (s.rows.size() > exchange::limits::kRowsWithCells) std::abort();
        for (const auto& [row, cells] : s.rows)
            if (row < 1 || row > exchange::limits::kRows ||
                cells.size() > static_cast<std::size_t>(exchange::limits::kKeptColumns))
                std::abort();
    }
}

}  // namespace brenlow::fuzz

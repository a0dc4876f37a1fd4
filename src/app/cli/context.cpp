#include "app/cli/context.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include "store/seed.h"

namespace brenlow::cli {

std::string Context::exe_dir() {
    std::error_code ec;
    const auto exe = std::filesystem::read_symlink("/proc/self/exe", ec);
    return ec ? std::string(".") : exe.parent_path().string();
}

suite::BaseServices& Context::base() {
    if (!base_) {
        const std::string url = db_url.empty() ? store::default_database_url() : db_url;
        if (reads_only_ && url.rfind("sqlite:", 0) == 0) {
            const std::string path = url.substr(7);
            std::error_code ec;
            if (!std::filesystem::exists(path, ec))
                throw std::runtime_error("there is no database at " + path + " (brenlow init creates it)");
        }
        auto db = store::open_database(url);
        base_ = std::make_shared<suite::BaseServices>(std::move(db), exe_dir(),
                                                      store::reference_data_dir(exe_dir()));
    }
    return *base_;
}

LongWork::LongWork(Context& ctx, std::string caption) : ctx_(ctx) {
    step(std::move(caption), 0.0);
}

void LongWork::step(std::string caption, double fraction) {
    // Whole tens, as the screens' progress reads; a step is told once.
    const int tens = static_cast<int>(std::clamp(fraction, 0.0, 1.0) * 10.0) * 10;
    if (caption == caption_ && tens == shown_) return;
    caption_ = std::move(caption);
    shown_ = tens;
    ctx_.err << caption_ << " " << tens << "%\n";
}

void LongWork::finished() {
    step(caption_, 1.0);
}

std::string fy_text(int year) {
    const int yy = year % 100;
    return std::to_string(year - 1) + "-" + (yy < 10 ? "0" : "") + std::to_string(yy);
}

}  // namespace brenlow::cli

#pragma once
// What every command of the command line shares: the chosen database, the output
// streams, and the base services once opened.

#include <memory>
#include <ostream>
#include <string>

#include "suite/base_services.h"

namespace brenlow::cli {

struct Context {
    Context(std::string url, std::ostream& o, std::ostream& e) : db_url(std::move(url)), out(o), err(e) {}

    std::string db_url;  // empty: the embedded default
    std::ostream& out;
    std::ostream& err;

    // Opens the database (creating the shared tables and masters) on first use.
    suite::BaseServices& base();
    // The command only reads: an embedded database that does not exist is refused, not
    // made. Called before base().
    void reads_only() { reads_only_ = true; }
    // Folder of this program (the error log goes there) and of the reference data.
    static std::string exe_dir();

private:
    std::shared_ptr<suite::BaseServices> base_;
    bool reads_only_ = false;
};

// Long work told on standard error as the desktop's progress box tells it: the caption
// at 0% when the work starts, each step as it comes, and 100% once it has ended well.
class LongWork {
public:
    LongWork(Context& ctx, std::string caption);
    void step(std::string caption, double fraction);
    void finished();

private:
    Context& ctx_;
    std::string caption_;
    int shown_ = -1;
};

// Financial year text: 2025 -> "2024-25".
std::string fy_text(int year);

}  // namespace brenlow::cli

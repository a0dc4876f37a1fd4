// brenlow demo: a demonstration client on the chosen database (the embedded default
// unless --db says otherwise) with a register that shows the system at work: five
// blocks, additions on both sides of the half-rate line, additional depreciation with
// its remaining half carried in, a sale that leaves a block nil with a capital gain,
// and an asset whose useful life is over. It then calculates both charts, prints them
// and writes them as PDF files. Running it again rebuilds the same register.

#include <filesystem>

#include "app/cli/commands.h"
#include "app/cli/options.h"
#include "register/calculation.h"
#include "register/chart_report.h"
#include "register/register_options.h"
#include "store/masters_store.h"
#include "store/register_store.h"
#include "suite/report.h"

namespace brenlow::cli {
namespace {

constexpr const char* kCode = "DEMO01";
constexpr const char* kName = "DEMO TRADERS";
constexpr int kYear = 2025;  // F.Y. 2024-25: the half-rate line is 04/10/2024
constexpr int kStatus = 3;

struct DemoGroup {
    const char* name;
    const char* block_it;
    double rate_it, addl_rate_it;
    const char* block_cl;
    double life, slm, wdv;
};

// Income-tax blocks of the year: building 10%, furniture 10%, plant 15% (additional
// 20%), computers 40%, intangible assets 25%.
constexpr DemoGroup kGroups[] = {
    {"FACTORY BUILDING", "1-10", 10, 0, "1.3", 30, 3.17, 9.50},
    {"OFFICE FURNITURE", "2-10", 10, 0, "5.1", 10, 9.50, 25.89},
    {"PLANT AND MACHINERY", "3-15", 15, 20, "4.1", 15, 6.33, 18.10},
    {"COMPUTERS", "3-40", 40, 0, "12.2", 3, 31.67, 63.16},
    {"SOFTWARE AND PATENTS", "4-25", 25, 0, "-1", 10, 10, 0},
};
enum GroupIndex { Building, Furniture, Plant, Computers, Intangible };

// The groups of the demo, matched by name within the year or added.
std::vector<long> ensure_groups(store::Database& db) {
    const auto existing = store::asset_groups_of_year(db, kYear);
    std::vector<long> serials;
    for (const auto& d : kGroups) {
        store::AssetGroupRow g;
        g.Yr = kYear;
        g.Part = d.name;
        g.BlockIdIT = d.block_it;
        g.RateIT = d.rate_it;
        g.AddlRateIT = d.addl_rate_it;
        g.BlockFA = -1;
        g.BlockIdCL = d.block_cl;
        g.LifeYrs = d.life;
        g.RateSLM = d.slm;
        g.RateWDV = d.wdv;
        long serial = 0;
        for (const auto& e : existing)
            if (e.Part == d.name) serial = e.SrNoFAGM;
        if (serial) {
            g.SrNoFAGM = serial;
            store::modify_asset_group(db, g);
        } else {
            serial = store::add_asset_group(db, g);
        }
        serials.push_back(serial);
    }
    return serials;
}

store::OpeningRow opening(long group, const char* part, const char* put, double cost, double op_dep,
                          double life, double rate, const char* method, double wdv_it, double rate_it) {
    store::OpeningRow o;
    o.IdFAGM = group;
    o.Part = part;
    o.PutDate = put;
    o.CostWdv = cost;
    o.OpDepr = op_dep;
    o.ResValue = cost * 0.05;
    o.LifeYrs = life;
    o.RateFACL = rate;
    o.WdvIT = wdv_it;
    o.RateIT = rate_it;
    reg::OpeningOpts opts;
    opts.MOD = method;
    o.OthOpts = opts.compose();
    return o;
}

store::AdditionRow addition(long group, const char* part, const char* put, double cost, double life,
                            double rate, const char* method, double rate_it, double addl) {
    store::AdditionRow a;
    a.IdFAGM = group;
    a.Part = part;
    a.PutDate = put;
    a.AccDate = put;
    a.PurAmt = cost;
    a.ResValue = cost * 0.05;
    a.LifeYrs = life;
    a.RateFACL = rate;
    a.RateIT = rate_it;
    a.AddlDepRT = addl;
    reg::AdditionOpts opts;
    opts.MOD = method;
    opts.AddlDep = addl > 0;
    a.OthOpts = opts.compose();
    return a;
}

void build_register(store::Database& db, const std::vector<long>& g) {
    store::RegisterStore rs(db, kCode, kYear);
    rs.ensure_tables();
    rs.delete_all_openings(std::nullopt);
    rs.delete_all_additions(std::nullopt);
    rs.rewrite_options_row(reg::RegisterOptions{}.compose());

    rs.insert_opening(opening(g[Building], "Factory shed, Plot 14 MIDC", "12/07/2018", 2400000, 380000, 30,
                              3.17, "SLM", 1735000, 10));
    rs.insert_opening(opening(g[Furniture], "Office furniture and fixtures", "01/05/2017", 450000, 210000, 10,
                              25.89, "WDV", 265000, 10));
    // Put to use in 2013 with a life of ten years: nothing of its life is left.
    rs.insert_opening(opening(g[Furniture], "Reception furniture (life over)", "15/04/2013", 120000, 100000,
                              10, 25.89, "WDV", 38000, 10));
    rs.insert_opening(
        opening(g[Plant], "CNC lathe", "20/09/2020", 1800000, 520000, 15, 18.10, "WDV", 1150000, 15));
    // Added last year after the line with additional depreciation: the remaining half
    // of it (20% of 6,00,000 halved) comes in this year.
    auto moulding = opening(g[Plant], "Injection moulding machine", "10/01/2024", 600000, 27150, 15, 18.10,
                            "WDV", 495000, 15);
    moulding.AddlDepRT = 20;
    moulding.AddlDepOn = 600000;
    {
        auto opts = reg::OpeningOpts::parse(moulding.OthOpts);
        opts.AddlDepOn = true;
        moulding.OthOpts = opts.compose();
    }
    rs.insert_opening(moulding);
    // The whole computer block is sold for more than its WDV: the block ends nil with
    // a capital gain of 95,000 - 2,000 - 60,000.
    auto desktops = opening(g[Computers], "Desktops and printers", "05/06/2021", 300000, 220000, 3, 63.16,
                            "WDV", 60000, 40);
    desktops.SaleDate = "18/11/2024";
    desktops.SaleAmt = 95000;
    desktops.SaleExp = 2000;
    rs.insert_opening(desktops);
    rs.insert_opening(opening(g[Intangible], "ERP software licence", "01/04/2021", 500000, 150000, 10, 10,
                              "SLM", 281250, 25));

    auto packaging = addition(g[Plant], "Packaging machine", "12/06/2024", 800000, 15, 18.10, "WDV", 15, 20);
    packaging.Subsidy = 50000;
    rs.insert_addition(packaging);
    rs.insert_addition(addition(g[Plant], "Conveyor line", "03/10/2024", 250000, 15, 18.10, "WDV", 15, 20));
    rs.insert_addition(addition(g[Plant], "Air compressor", "04/10/2024", 180000, 15, 18.10, "WDV", 15, 20));
    auto boiler = addition(g[Plant], "Steam boiler", "15/12/2024", 400000, 15, 18.10, "WDV", 15, 20);
    boiler.CurrDiff = 12000;
    rs.insert_addition(boiler);
    rs.insert_addition(addition(g[Furniture], "Workstations", "20/08/2024", 90000, 10, 25.89, "WDV", 10, 0));
    rs.insert_addition(
        addition(g[Building], "Warehouse extension", "10/01/2025", 600000, 30, 3.17, "SLM", 10, 0));
    rs.insert_addition(
        addition(g[Intangible], "Patent - valve design", "01/02/2025", 200000, 10, 10, "SLM", 25, 0));
}

}  // namespace

int demo_command(Context& ctx, const std::vector<std::string>& args) {
    const Options opt(args, {"yes"});
    opt.reject_unknown({"out", "yes"});
    const std::filesystem::path dir = opt.get("out").value_or(".");
    std::filesystem::create_directories(dir);
    const auto it_pdf = (dir / "demo-income-tax-chart.pdf").string();
    const auto books_pdf = (dir / "demo-books-chart.pdf").string();
    // Asked before the client is made, not after.
    for (const auto& pdf : {it_pdf, books_pdf}) suite::check_target(pdf, existing_file(opt));

    auto& base = ctx.base();
    base.create_client_year(kCode, kYear, kName, kStatus);
    auto& db = base.dbobj();
    build_register(db, ensure_groups(db));
    ctx.out << "Database: " << db.describe() << "\n"
            << "Demo client " << kCode << " (" << kName << "), status " << kStatus << ", F.Y. "
            << fy_text(kYear) << "\n\n";

    const auto it = reg::run_calculation(db, kCode, kYear, reg::Mode::DEP_IT, false);
    const auto books = reg::run_calculation(db, kCode, kYear, reg::Mode::DEP_FA, false);
    const reg::PrintedClient client{kCode, kName};
    const auto it_doc = reg::income_tax_chart_report(it, client);
    const auto books_doc = reg::books_chart_report(books, client);
    ctx.out << Ostikreport::render_text(it_doc) << "\n"
            << Ostikreport::render_text(reg::block_summary_report(it, client)) << "\n"
            << Ostikreport::render_text(books_doc) << "\n";

    Ostikreport::write_pdf(it_doc, it_pdf, existing_file(opt));
    Ostikreport::write_pdf(books_doc, books_pdf, existing_file(opt));
    ctx.out << "Wrote " << it_pdf << "\nWrote " << books_pdf << "\n";
    return 0;
}

}  // namespace brenlow::cli

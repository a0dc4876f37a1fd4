#include "register/register_fixture.h"

#include <unistd.h>

#include "store/schema.h"

namespace brenlow::test {

void RegisterTest::SetUp() {
    BackendTest::SetUp();
    if (IsSkipped()) return;
    dir_ = std::filesystem::temp_directory_path() / ("brenlow-register-" + std::to_string(::getpid()) + "-" +
                                                     std::to_string(reinterpret_cast<std::uintptr_t>(this)));
    std::filesystem::create_directories(dir_);
    base_ =
        std::make_shared<suite::BaseServices>(temp().open_another(), dir_.string(), BRENLOW_TEST_DATA_DIR);
    base_->create_client_year("C001", kYear, "ACME TRADERS", 1);
    comp_.base = base_;
    comp_.forms = std::make_shared<suite::BaseForms>(base_);
    comp_.log.set_exe_path(dir_.string());
    add_group(kPlant, kYear, "PLANT AND MACHINERY", "3-15", 15, 20, "4.1", 15, 6.33, 18.10);
    add_group(kFurniture, kYear, "FURNITURE", "2-10", 10, 0, "-1", 0, 0, 0);
    add_group(kBuilding, kYear, "FACTORY BUILDING", "1-10", 10, 0, "1.3", 30, 3.17, 9.50);
}

void RegisterTest::TearDown() {
    comp_.base.reset();
    comp_.forms.reset();
    base_.reset();
    if (!dir_.empty()) std::filesystem::remove_all(dir_);
    BackendTest::TearDown();
}

std::unique_ptr<frame::Component> RegisterTest::another_component() {
    auto c = std::make_unique<frame::Component>();
    auto b =
        std::make_shared<suite::BaseServices>(temp().open_another(), dir_.string(), BRENLOW_TEST_DATA_DIR);
    b->select_client_year("C001", kYear);
    c->base = b;
    c->forms = std::make_shared<suite::BaseForms>(b);
    c->log.set_exe_path(dir_.string());
    return c;
}

std::unique_ptr<reg::frmNewFATR> RegisterTest::open_screen(Ui& ui) {
    auto s = std::make_unique<reg::frmNewFATR>(comp_, ui);
    EXPECT_TRUE(s->Form_Load());
    return s;
}

void RegisterTest::add_group(long sr, int year, const std::string& part, const std::string& block_it,
                             double rate_it, double addl, const std::string& block_cl, double life,
                             double slm, double wdv) {
    db().execute("INSERT INTO NewFAGM Values (" + std::to_string(sr) + "," + std::to_string(year) + ",'" +
                 part + "','" + block_it + "'," + std::to_string(rate_it) + "," + std::to_string(addl) +
                 ",0," + std::to_string(rate_it) + ",'" + block_cl + "'," + std::to_string(life) + "," +
                 std::to_string(slm) + "," + std::to_string(wdv) + ")");
}

std::vector<std::string> RegisterTest::boxes() {
    std::vector<std::string> out;
    for (const auto& b : ui_.shown())
        if (b.kind == ShownBox::Kind::message || b.kind == ShownBox::Kind::yes_no) out.push_back(b.text);
    ui_.forget();
    return out;
}

long RegisterTest::count(const std::string& table_and_where) {
    return static_cast<long>(db().query("SELECT COUNT(*) AS n FROM " + table_and_where).first("n").as_int());
}

long RegisterTest::insert_opening(long group, const std::string& part, double cost) {
    store::OpeningRow o;
    o.IdFAGM = group;
    o.Part = part;
    o.CostWdv = cost;
    o.OpDepr = cost / 10;
    o.ResValue = cost / 20;
    o.LifeYrs = 15;
    o.RateFACL = 18.1;
    o.WdvIT = cost * 0.8;
    o.RateIT = 15;
    o.PutDate = "01/04/2012";
    return store().insert_opening(o);
}

long RegisterTest::insert_addition(long group, const std::string& part, double cost) {
    store::AdditionRow a;
    a.IdFAGM = group;
    a.Part = part;
    a.PutDate = "15/06/2015";
    a.AccDate = "10/06/2015";
    a.PurAmt = cost;
    a.ResValue = cost / 20;
    a.LifeYrs = 15;
    a.RateFACL = 18.1;
    a.RateIT = 15;
    return store().insert_addition(a);
}

}  // namespace brenlow::test

#pragma once
// A client-year with a few asset groups, on the backend of the test, and the
// register screen opened on it through a scripted Ui.

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "frame/component.h"
#include "register/frm_new_fatr.h"
#include "store/register_store.h"
#include "suite/defaults.h"
#include "support/scripted_ui.h"
#include "support/test_databases.h"

namespace brenlow::test {

class RegisterTest : public BackendTest {
protected:
    static constexpr int kYear = 2016;  // F.Y. 2015-16
    static constexpr long kPlant = 11;  // asset groups of the year
    static constexpr long kFurniture = 12;
    static constexpr long kBuilding = 13;  // its classification forbids extra shifts

    void SetUp() override;
    void TearDown() override;

    // Another copy of the suite on its own connection, with the same client year open.
    std::unique_ptr<frame::Component> another_component();
    // The screen, made and loaded.
    std::unique_ptr<reg::frmNewFATR> open_screen(Ui& ui);

    void add_group(long sr, int year, const std::string& part, const std::string& block_it, double rate_it,
                   double addl, const std::string& block_cl, double life, double slm, double wdv);
    long count(const std::string& table_and_where);
    // Texts of every box shown (messages and questions), in order; then forgets them.
    std::vector<std::string> boxes();
    store::RegisterStore store() { return store::RegisterStore(db(), "C001", kYear); }
    // A stored opening / addition row with the usual figures.
    long insert_opening(long group, const std::string& part, double cost = 100000);
    long insert_addition(long group, const std::string& part, double cost = 50000);

    std::filesystem::path dir_;
    std::shared_ptr<suite::BaseServices> base_;
    frame::Component comp_;
    ScriptedUi ui_;
};

}  // namespace brenlow::test

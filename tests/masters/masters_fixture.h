#pragma once
// A component over a temporary database of either backend, with client C001's
// financial year 2024-25 open, for driving the master screens.

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

#include "frame/component.h"
#include "store/database.h"
#include "suite/base_services.h"
#include "support/scripted_ui.h"
#include "support/test_databases.h"

namespace brenlow::masters::test {

class MastersTest : public brenlow::test::BackendTest {
protected:
    static constexpr int kYear = 2025;

    void SetUp() override {
        brenlow::test::BackendTest::SetUp();
        if (IsSkipped()) return;
        folder_ =
            std::filesystem::temp_directory_path() / ("brenlow-masters-" + std::to_string(::getpid()) + "-" +
                                                      std::to_string(reinterpret_cast<std::uintptr_t>(this)));
        std::filesystem::create_directories(folder_);
        base_ = std::make_shared<suite::BaseServices>(temp().open_another(), folder_.string(),
                                                      BRENLOW_TEST_DATA_DIR);
        base_->create_client_year("C001", kYear, "ACME", 1);
        component_.base = base_;
        component_.log.set_exe_path(folder_.string());
    }
    void TearDown() override {
        component_.base.reset();
        base_.reset();
        if (!folder_.empty()) std::filesystem::remove_all(folder_);
        brenlow::test::BackendTest::TearDown();
    }

    long long count(const std::string& where) {
        return db().query("select count(*) as n from " + where).first("n").as_int();
    }
    store::Recordset rows(const std::string& sql) { return db().query(sql); }

    suite::BaseServices& base() { return *base_; }
    frame::Component& component() { return component_; }

    std::filesystem::path folder_;
    std::shared_ptr<suite::BaseServices> base_;
    frame::Component component_;
    brenlow::test::ScriptedUi ui_;
};

}  // namespace brenlow::masters::test

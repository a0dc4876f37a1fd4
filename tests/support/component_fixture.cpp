#include "support/component_fixture.h"

#include <unistd.h>

#include <cstdint>

#include "store/seed.h"

namespace brenlow::test {

void ComponentTest::SetUp() {
    BackendTest::SetUp();
    if (IsSkipped()) return;
    folder_ =
        std::filesystem::temp_directory_path() / ("brenlow-component-" + std::to_string(::getpid()) + "-" +
                                                  std::to_string(reinterpret_cast<std::uintptr_t>(this)));
    std::filesystem::create_directories(folder_);
    base_ = std::make_shared<suite::BaseServices>(temp().open_another(), folder_.string(),
                                                  store::reference_data_dir());
    base_->create_client_year("C001", kComponentYear, "ACME", 1);
    component_.base = base_;
    component_.forms = std::make_shared<suite::BaseForms>(base_);
    component_.report = std::make_shared<suite::ReportObject>();
    component_.log.set_exe_path(folder_.string());
}

void ComponentTest::TearDown() {
    component_.base.reset();
    component_.forms.reset();
    component_.report.reset();
    base_.reset();
    if (!folder_.empty()) std::filesystem::remove_all(folder_);
    BackendTest::TearDown();
}

}  // namespace brenlow::test

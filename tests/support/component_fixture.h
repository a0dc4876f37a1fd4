#pragma once
// A loaded component for screen tests: base services on a second connection to
// the test's database, client C001 with its year open, the base forms and a report
// object, and an error log in a folder of the test's own.

#include <filesystem>
#include <memory>

#include "frame/component.h"
#include "suite/defaults.h"
#include "support/test_databases.h"

namespace brenlow::test {

class ComponentTest : public BackendTest {
protected:
    static constexpr int kComponentYear = 2025;

    void SetUp() override;
    void TearDown() override;

    std::filesystem::path folder_;
    std::shared_ptr<suite::BaseServices> base_;
    frame::Component component_;
};

}  // namespace brenlow::test

#include "ui/qt_app.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <memory>

namespace brenlow::test {

namespace {

int argc = 1;
char name[] = "test_ui";
char* argv[] = {name, nullptr};
std::unique_ptr<QApplication> app;

class QtEnvironment : public ::testing::Environment {
public:
    void SetUp() override { ensure_qt_app(); }
    void TearDown() override { app.reset(); }
};

[[maybe_unused]] ::testing::Environment* const environment =
    ::testing::AddGlobalTestEnvironment(new QtEnvironment);

}  // namespace

void ensure_qt_app() {
    if (QApplication::instance()) return;
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    app = std::make_unique<QApplication>(argc, argv);
}

}  // namespace brenlow::test

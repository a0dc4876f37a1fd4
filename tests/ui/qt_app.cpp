#include "ui/qt_app.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QWidget>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <set>

namespace brenlow::test {

namespace {

int argc = 1;
char program_name[] = "test_ui";
char* argv[] = {program_name, nullptr};
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

bool save_picture(QWidget& window, const std::string& name) {
    const char* folder = std::getenv("BRENLOW_ARTIFACTS");
#ifdef BRENLOW_ARTIFACTS_DIR
    const std::filesystem::path fallback = BRENLOW_ARTIFACTS_DIR;
#else
    const std::filesystem::path fallback = ".";
#endif
    const std::filesystem::path dir = folder && *folder ? std::filesystem::path(folder) : fallback;
    std::filesystem::create_directories(dir);
    return window.grab().save(QString::fromStdString((dir / (name + ".png")).string()));
}

int drawn_colours(QWidget& widget) {
    const QImage image = widget.grab().toImage();
    std::set<QRgb> colours;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) colours.insert(image.pixel(x, y));
    return static_cast<int>(colours.size());
}

}  // namespace brenlow::test

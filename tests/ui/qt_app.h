#pragma once
// One QApplication for the whole test program, made before the first widget.

#include <QApplication>

namespace brenlow::test {

inline void ensure_qt_app() {
    if (QApplication::instance()) return;
    static int argc = 1;
    static char name[] = "test_ui";
    static char* argv[] = {name, nullptr};
    static QApplication app(argc, argv);
}

}  // namespace brenlow::test

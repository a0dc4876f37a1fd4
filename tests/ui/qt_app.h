#pragma once
// One QApplication for the whole test program: made before the first test and
// gone before the program's statics are, so nothing of Qt outlives it.
// The tests draw off screen unless told otherwise, so they run without a display
// however they are started.

namespace brenlow::test {

// Makes sure the application exists; safe to call from any test.
void ensure_qt_app();

}  // namespace brenlow::test

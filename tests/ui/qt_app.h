#pragma once
// One QApplication for the whole test program: made before the first test and
// gone before the program's statics are, so nothing of Qt outlives it.
// The tests draw off screen unless told otherwise, so they run without a display
// however they are started.

#include <string>

class QWidget;

namespace brenlow::test {

// Makes sure the application exists; safe to call from any test.
void ensure_qt_app();

// Saves a picture of a window for people to look at: NAME.png in the folder named
// by BRENLOW_ARTIFACTS, else the build's artifacts folder.
bool save_picture(QWidget& window, const std::string& name);

// The distinct colours of a widget as it draws now: an empty or unpainted grid shows a
// handful (background, lines, selection); a grid with its texts drawn shows the many
// shades of their letters.
int drawn_colours(QWidget& widget);

}  // namespace brenlow::test

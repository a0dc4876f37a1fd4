#pragma once
// What a person looking at a window would complain of first, checked by program:
// a caption, label or grid cell cut short, and two controls answering one Alt key.

#include <QSize>
#include <string>
#include <vector>

class QWidget;

namespace brenlow::test {

// Visible labels, buttons and grid cells of `window` whose text is wider (by the
// widget's own font metrics) than the room the widget gives it, each described as
// "what 'text': needs N px, has M".
std::vector<std::string> cut_texts(QWidget& window);

// The Alt keys that more than one visible, enabled control (button, buddied label,
// group box, menu title) of `window` answers, each as "Alt+K: caption, caption".
std::vector<std::string> shared_mnemonics(QWidget& window);

// The window drawn at a screen size and kept as review-NAME-WxH.png with the build's
// artifacts; false when the picture could not be written.
bool save_picture_at(QWidget& window, const std::string& name, QSize size);

}  // namespace brenlow::test

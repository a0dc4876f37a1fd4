#include "ui/vtxt_edit.h"

#include <QKeyEvent>
#include <algorithm>

namespace brenlow {

namespace {

// The named keys the field itself decides on; 0 for the rest.
int control_code(const QKeyEvent& event) {
    switch (event.key()) {
        case Qt::Key_Tab:
            return vTXT::kTab;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return vTXT::kEnter;
        case Qt::Key_Backspace:
            return vTXT::kBackspace;
        case Qt::Key_Escape:
            return vTXT::kEscape;
        default:
            return 0;
    }
}

}  // namespace

VTxtEdit::VTxtEdit(Ui& ui, QWidget* parent) : QLineEdit(parent), field_(ui) {
    field_.set_on_enter([this](int&) { emit enterPressed(); });
}

void VTxtEdit::set_MaxLength(std::int16_t max_length) {
    field_.set_MaxLength(max_length);
    // The box counts UTF-16 units, two for an emoji: the field's own limit, in
    // characters, is the one that holds.
    setMaxLength(max_length > 0 ? std::min(2 * static_cast<int>(max_length), 32767) : 32767);
    show_field();
}

bool VTxtEdit::validate_field() {
    load_field();
    return field_.validate();
}

void VTxtEdit::load_field() {
    // The field holds UTF-8 and counts its caret in bytes; the box, in UTF-16 units.
    const QString shown = text();
    const auto bytes_before = [&](qsizetype at) { return static_cast<int>(shown.left(at).toUtf8().size()); };
    field_.set_text(shown.toUtf8().toStdString());
    if (hasSelectedText()) {
        const int from = bytes_before(selectionStart());
        field_.set_selection(from, bytes_before(selectionStart() + selectedText().size()) - from);
    } else {
        field_.set_selection(bytes_before(cursorPosition()), 0);
    }
}

void VTxtEdit::show_field() {
    const std::string& held = field_.text();
    const QString shown = QString::fromUtf8(held.data(), static_cast<qsizetype>(held.size()));
    if (shown != text()) setText(shown);
    setCursorPosition(static_cast<int>(QString::fromUtf8(held.data(), field_.sel_start()).size()));
}

KeyAction VTxtEdit::forward(int code) {
    load_field();
    const KeyResult result = field_.key_press(code);
    switch (result.action) {
        case KeyAction::accept:
            show_field();
            break;
        case KeyAction::cancel:
            setFocus(Qt::OtherFocusReason);
            break;
        case KeyAction::tab_move:
        case KeyAction::enter:
            focusNextChild();
            break;
    }
    return result.action;
}

// Tab never reaches keyPressEvent: QWidget::event moves the focus first. The field
// must see it, since a failed check keeps the focus where it is.
bool VTxtEdit::event(QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        auto* key = static_cast<QKeyEvent*>(event);
        const auto plain = !(key->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier));
        if (key->key() == Qt::Key_Tab && plain) {
            forward(vTXT::kTab);
            return true;
        }
    }
    return QLineEdit::event(event);
}

void VTxtEdit::keyPressEvent(QKeyEvent* event) {
    if (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) {
        QLineEdit::keyPressEvent(event);  // clipboard and other shortcuts
        return;
    }
    if (const int code = control_code(*event)) {
        forward(code);
        if (code == vTXT::kEscape) event->ignore();  // a dialog's Escape still reaches the dialog
        return;
    }
    const QString typed = event->text();
    if (typed.isEmpty() || !typed.at(0).isPrint()) {
        QLineEdit::keyPressEvent(event);  // arrows, Home, End, Delete...
        return;
    }
    for (const char32_t c : typed.toUcs4()) forward(static_cast<int>(c));
}

}  // namespace brenlow

#include "ui/vtxt_edit.h"

#include <QKeyEvent>

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
    setMaxLength(max_length > 0 ? max_length : 32767);
    show_field();
}

bool VTxtEdit::validate_field() {
    load_field();
    return field_.validate();
}

void VTxtEdit::load_field() {
    // The field holds one byte per character, as the desktop's text boxes did.
    field_.set_text(text().toLatin1().toStdString());
    if (hasSelectedText()) {
        field_.set_selection(selectionStart(), static_cast<int>(selectedText().size()));
    } else {
        field_.set_selection(cursorPosition(), 0);
    }
}

void VTxtEdit::show_field() {
    const QString shown =
        QString::fromLatin1(field_.text().data(), static_cast<qsizetype>(field_.text().size()));
    if (shown != text()) setText(shown);
    setCursorPosition(field_.sel_start());
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
    for (const QChar c : typed) {
        // Beyond the Latin-1 page the field has no character to keep.
        if (c.unicode() > 0xFF) continue;
        forward(c.unicode());
    }
}

}  // namespace brenlow

#pragma once
// The desktop face of vTXT: a line edit that hands every typed key to the field's
// logic and shows the text the logic keeps. Navigation and clipboard keys stay
// with the line edit; pasted text arrives as a whole, not as keys, so the key rules
// do not see it (the leave-field check still does).

#include <QLineEdit>

#include "controls/vtxt.h"

namespace brenlow {

class VTxtEdit : public QLineEdit {
    Q_OBJECT
public:
    VTxtEdit(Ui& ui, QWidget* parent = nullptr);

    vTXT& field() { return field_; }
    // MaxLength goes to both the logic and the line edit.
    void set_MaxLength(std::int16_t max_length);
    // The leave-field check, as a screen asks for it before saving.
    bool validate_field();

signals:
    // Enter was pressed (before the focus moves on).
    void enterPressed();

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    // Hands one key to the logic with the line edit's text and caret, and shows
    // the outcome. Returns what became of the key.
    KeyAction forward(int code);
    void load_field();
    void show_field();

    vTXT field_;
};

}  // namespace brenlow

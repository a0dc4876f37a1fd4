#pragma once
// The Ui of the desktop: message boxes, input boxes, file dialogs and a progress
// dialog, all owned by the window of the screen they speak for.

#include <QPointer>
#include <QString>
#include <QWidget>

#include "controls/ui_port.h"

class QProgressDialog;

namespace brenlow {

// "Spreadsheet (*.xlsx)|*.xlsx|All files|*.*" as a file dialog filter:
// "Spreadsheet (*.xlsx);;All files (*.*)".
QString qt_file_filter(std::string_view filter);

class QtUi : public Ui {
public:
    explicit QtUi(QWidget* window);
    ~QtUi() override;

    void message(std::string_view text, MsgIcon icon = MsgIcon::none, std::string_view title = {}) override;
    bool ask_yes_no(std::string_view text, MsgIcon icon = MsgIcon::question, bool default_yes = true,
                    std::string_view title = {}) override;
    std::optional<std::string> input_box(std::string_view prompt, std::string_view title = {},
                                         std::string_view default_text = {}) override;
    std::optional<std::string> choose_open_file(std::string_view title,
                                                std::string_view filter = {}) override;
    std::optional<std::string> choose_save_file(std::string_view title, std::string_view default_name = {},
                                                std::string_view filter = {}) override;
    void progress(std::string_view text, double fraction) override;
    void progress_done() override;
    void close_screen() override;

    // The window the boxes belong to and that closing the screen closes.
    void set_window(QWidget* window) { window_ = window; }

private:
    QString caption(std::string_view title) const;

    QPointer<QWidget> window_;
    QPointer<QProgressDialog> progress_;
};

}  // namespace brenlow

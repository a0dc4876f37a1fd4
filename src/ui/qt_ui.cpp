#include "ui/qt_ui.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QProgressDialog>
#include <QStringList>
#include <algorithm>

#include "ui/window_base.h"

namespace brenlow {

namespace {

QString qs(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QMessageBox::Icon box_icon(MsgIcon icon) {
    switch (icon) {
        case MsgIcon::information:
            return QMessageBox::Information;
        case MsgIcon::exclamation:
            return QMessageBox::Warning;
        case MsgIcon::critical:
            return QMessageBox::Critical;
        case MsgIcon::question:
            return QMessageBox::Question;
        case MsgIcon::none:
            break;
    }
    return QMessageBox::NoIcon;
}

constexpr int kProgressSteps = 1000;

// A box takes the focus while it is up; the field the person was in gets it back
// when the box closes (a check that wants another field moves it on afterwards).
class FocusKept {
public:
    explicit FocusKept(QWidget* window) : field_(QApplication::focusWidget()) {
        // A button pressed to get here hands back to the field worked in before it.
        if (!field_ || qobject_cast<QAbstractButton*>(field_.data())) {
            if (auto* screen = qobject_cast<ui::ScreenWindow*>(window); screen && screen->last_field())
                field_ = screen->last_field();
        }
    }
    ~FocusKept() {
        if (!field_ || !field_->isVisible() || !field_->isEnabled()) return;
        if (QWidget* window = field_->window()) window->activateWindow();
        field_->setFocus(Qt::OtherFocusReason);
    }
    FocusKept(const FocusKept&) = delete;
    FocusKept& operator=(const FocusKept&) = delete;

private:
    QPointer<QWidget> field_;
};

}  // namespace

QString qt_file_filter(std::string_view filter) {
    const QStringList parts = qs(filter).split(QLatin1Char('|'));
    QStringList out;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        const QString& description = parts[i];
        QString patterns = parts[i + 1];
        patterns.replace(QLatin1Char(';'), QLatin1Char(' '));
        out << (description.contains(QLatin1Char('(')) ? description : description + " (" + patterns + ")");
    }
    return out.join(QStringLiteral(";;"));
}

QtUi::QtUi(QWidget* window) : window_(window) {}

QtUi::~QtUi() {
    delete progress_;
}

QString QtUi::caption(std::string_view title) const {
    return title.empty() ? QApplication::applicationDisplayName() : qs(title);
}

void QtUi::message(std::string_view text, MsgIcon icon, std::string_view title) {
    const FocusKept focus(window_);
    QMessageBox box(box_icon(icon), caption(title), qs(text), QMessageBox::Ok, window_);
    box.exec();
}

bool QtUi::ask_yes_no(std::string_view text, MsgIcon icon, bool default_yes, std::string_view title) {
    const FocusKept focus(window_);
    QMessageBox box(box_icon(icon), caption(title), qs(text), QMessageBox::Yes | QMessageBox::No, window_);
    box.setDefaultButton(default_yes ? QMessageBox::Yes : QMessageBox::No);
    box.setEscapeButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}

std::optional<std::string> QtUi::input_box(std::string_view prompt, std::string_view title,
                                           std::string_view default_text) {
    const FocusKept focus(window_);
    bool ok = false;
    const QString answer =
        QInputDialog::getText(window_, caption(title), qs(prompt), QLineEdit::Normal, qs(default_text), &ok);
    if (!ok) return std::nullopt;
    return answer.toStdString();
}

std::optional<std::string> QtUi::choose_open_file(std::string_view title, std::string_view filter) {
    const QString file = QFileDialog::getOpenFileName(window_, qs(title), QString(), qt_file_filter(filter));
    if (file.isEmpty()) return std::nullopt;
    return file.toStdString();
}

std::optional<std::string> QtUi::choose_save_file(std::string_view title, std::string_view default_name,
                                                  std::string_view filter) {
    const QString file =
        QFileDialog::getSaveFileName(window_, qs(title), qs(default_name), qt_file_filter(filter));
    if (file.isEmpty()) return std::nullopt;
    return file.toStdString();
}

void QtUi::progress(std::string_view text, double fraction) {
    if (!progress_) {
        progress_ = new QProgressDialog(window_);
        progress_->setWindowModality(Qt::WindowModal);
        progress_->setCancelButton(nullptr);  // long work runs to its end
        progress_->setRange(0, kProgressSteps);
        progress_->setMinimumDuration(500);
        progress_->setAutoClose(false);
        progress_->setAutoReset(false);
    }
    progress_->setLabelText(qs(text));
    // setValue lets a modal dialog paint, so the window does not look hung.
    progress_->setValue(static_cast<int>(std::clamp(fraction, 0.0, 1.0) * kProgressSteps));
}

void QtUi::progress_done() {
    if (progress_) {
        progress_->reset();
        progress_->hide();
    }
}

void QtUi::close_screen() {
    if (window_) window_->window()->close();
}

}  // namespace brenlow

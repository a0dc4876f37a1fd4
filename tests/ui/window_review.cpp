#include "ui/window_review.h"

#include <QAbstractButton>
#include <QApplication>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QStyle>
#include <QTableView>
#include <QWidget>
#include <map>

#include "ui/qt_app.h"

namespace brenlow::test {

namespace {

// The character a caption's '&' marks, upper-cased; 0 for none ("&&" is an ampersand).
QChar mnemonic_of(const QString& caption) {
    for (qsizetype i = 0; i + 1 < caption.size(); ++i) {
        if (caption[i] != '&') continue;
        if (caption[i + 1] == '&') {
            ++i;
            continue;
        }
        return caption[i + 1].toUpper();
    }
    return QChar();
}

// The caption as drawn: the mnemonic's '&' gone, "&&" one ampersand.
QString drawn(QString caption) {
    caption.replace("&&", QString(QChar(0x1)));
    caption.remove('&');
    caption.replace(QChar(0x1), "&");
    return caption;
}

bool shown(QWidget* widget, QWidget& window) {
    return widget->isVisibleTo(&window) && widget->width() > 0;
}

// A disabled control does not answer its Alt key.
bool answers(QWidget* widget, QWidget& window) {
    return shown(widget, window) && widget->isEnabled();
}

std::string describe(const char* what, const QString& text, int needs, int has) {
    return std::string(what) + " '" + text.toStdString() + "': needs " + std::to_string(needs) + " px, has " +
           std::to_string(has);
}

void check_label(QLabel* label, std::vector<std::string>& out) {
    if (label->wordWrap() || label->textFormat() == Qt::RichText ||
        (label->textFormat() == Qt::AutoText && Qt::mightBeRichText(label->text())))
        return;
    const QString text = label->buddy() ? drawn(label->text()) : label->text();
    if (text.isEmpty()) return;
    int widest = 0;
    for (const QString& line : text.split('\n'))
        widest = std::max(widest, label->fontMetrics().horizontalAdvance(line));
    const int room =
        label->contentsRect().width() - 2 * std::max(0, label->margin()) - std::max(0, label->indent());
    if (widest > room) out.push_back(describe("label", text, widest, room));
}

void check_button(QAbstractButton* button, std::vector<std::string>& out) {
    if (button->text().isEmpty()) return;
    const int needs = button->minimumSizeHint().width();
    if (needs > button->width())
        out.push_back(describe("button", drawn(button->text()), needs, button->width()));
}

void check_cells(QTableView* view, std::vector<std::string>& out) {
    auto* model = view->model();
    if (!model || model->rowCount() == 0) return;
    const QFontMetrics metrics(view->font());
    // The item delegate's text margin on each side.
    const int margins = 2 * (view->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, view) + 1);
    int first = view->rowAt(0);
    int last = view->rowAt(view->viewport()->height() - 1);
    if (first < 0) first = 0;
    if (last < 0) last = model->rowCount() - 1;
    for (int r = first; r <= last; ++r) {
        if (view->isRowHidden(r)) continue;
        for (int c = 0; c < model->columnCount(); ++c) {
            if (view->isColumnHidden(c) || view->columnSpan(r, c) > 1) continue;
            const QString text = model->index(r, c).data(Qt::DisplayRole).toString();
            if (text.isEmpty()) continue;
            const int needs = metrics.horizontalAdvance(text) + margins;
            if (needs > view->columnWidth(c))
                out.push_back(describe("cell", text, needs, view->columnWidth(c)));
        }
    }
}

}  // namespace

std::vector<std::string> cut_texts(QWidget& window) {
    std::vector<std::string> out;
    for (auto* label : window.findChildren<QLabel*>())
        if (shown(label, window)) check_label(label, out);
    for (auto* button : window.findChildren<QAbstractButton*>())
        if (shown(button, window)) check_button(button, out);
    for (auto* view : window.findChildren<QTableView*>())
        if (shown(view, window)) check_cells(view, out);
    return out;
}

std::vector<std::string> shared_mnemonics(QWidget& window) {
    std::map<QChar, QStringList> by_key;
    const auto note = [&](const QString& caption) {
        const QChar key = mnemonic_of(caption);
        if (!key.isNull()) by_key[key] << drawn(caption);
    };
    for (auto* button : window.findChildren<QAbstractButton*>())
        if (answers(button, window)) note(button->text());
    for (auto* label : window.findChildren<QLabel*>())
        if (label->buddy() && answers(label->buddy(), window)) note(label->text());
    for (auto* box : window.findChildren<QGroupBox*>())
        if (answers(box, window)) note(box->title());
    for (auto* bar : window.findChildren<QMenuBar*>())
        for (auto* action : bar->actions()) note(action->text());
    std::vector<std::string> out;
    for (const auto& [key, captions] : by_key)
        if (captions.size() > 1)
            out.push_back("Alt+" + QString(key).toStdString() + ": " + captions.join(", ").toStdString());
    return out;
}

bool save_picture_at(QWidget& window, const std::string& name, QSize size) {
    window.resize(size);
    QApplication::processEvents();
    return save_picture(
        window, "review-" + name + "-" + std::to_string(size.width()) + "x" + std::to_string(size.height()));
}

}  // namespace brenlow::test

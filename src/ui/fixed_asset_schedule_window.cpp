#include "ui/fixed_asset_schedule_window.h"

#include <QCheckBox>
#include <QColor>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "controls/id_text_list.h"
#include "controls/number_format.h"
#include "schedules/fixed_schedule_report.h"
#include "store/client_store.h"
#include "ui/chart_editor_window.h"

namespace brenlow::ui {
namespace {

using sched::FixedAssetSchedule;
using sched::SubView;

constexpr int kColumns = 17;

QString money(double v) {
    return QString::fromStdString(format_mask(v, "###0.00"));
}

double number_of(const QTableWidgetItem* item) {
    return item ? item->text().toDouble() : 0.0;
}

QComboBox* combo_of(const std::string& list, long id, QWidget* parent) {
    auto* box = new QComboBox(parent);
    const IdTextList items = IdTextList::parse(list);
    for (const auto& it : items.items())
        box->addItem(QString::fromStdString(it.text), QString::fromStdString(it.id));
    // A stored id the list lacks is shown as it is (none as a blank), never silently
    // replaced by the first of the list.
    if (box->findData(QString::number(id)) < 0)
        box->insertItem(id == 0 ? 0 : box->count(), id == 0 ? QString() : QString::number(id),
                        QString::number(id));
    box->setCurrentIndex(std::max(0, box->findData(QString::number(id))));
    return box;
}

long combo_id(QTableWidget* grid, int row, int col) {
    const auto* box = qobject_cast<QComboBox*>(grid->cellWidget(row, col));
    return box ? box->currentData().toString().toLong() : 0;
}

}  // namespace

FixedAssetScheduleWindow::FixedAssetScheduleWindow(frame::Component& component, QWidget* parent)
    : QWidget(parent), component_(component), ui_(this) {
    setWindowTitle("Fixed Assets");
    screen_ = std::make_unique<FixedAssetSchedule>(component, ui_);
    grid_ = new QTableWidget(0, kColumns, this);
    grid_->setColumnHidden(14, true);
    grid_->horizontalHeader()->setDefaultAlignment(Qt::AlignCenter);
    grid_->verticalHeader()->setVisible(false);
    lines_ = new QTableWidget(0, 12, this);
    lines_->verticalHeader()->setVisible(false);
    title_ = new QLabel(this);

    auto* add_row = new QPushButton("&Add Row", this);
    auto* save_button = new QPushButton("&Save", this);
    auto* trans = new QPushButton("Transfer to &Trial Balance", this);
    auto* fatrans = new QPushButton("Transfer to Capital &Gain", this);
    auto* add_line = new QPushButton("Add &Line", this);
    auto* save_lines = new QPushButton("Sa&ve List", this);
    auto* print_it = new QPushButton("&Print IT Chart", this);
    auto* print_books = new QPushButton("Print &Books Chart", this);
    auto* close = new QPushButton("&Close", this);
    auto* del_row = new QPushButton("&Delete Row", this);
    auto* del_line = new QPushButton("Delete L&ine", this);
    auto* dep_edit = new QPushButton("Edit Chart &Manually", this);
    connect(del_row, &QPushButton::clicked, this, [this] { delete_row(); });
    connect(del_line, &QPushButton::clicked, this, [this] { delete_line(); });
    connect(dep_edit, &QPushButton::clicked, this, [this] {
        if (!screen_->cmddepedit_Click()) return;
        auto* editor = new ChartEditorWindow(component_, this);
        editor->setWindowFlag(Qt::Window);
        editor->setAttribute(Qt::WA_DeleteOnClose);
        if (editor->load())
            editor->show();
        else
            editor->deleteLater();
    });
    connect(print_it, &QPushButton::clicked, this, [this] { print(true); });
    connect(print_books, &QPushButton::clicked, this, [this] { print(false); });
    connect(add_row, &QPushButton::clicked, this, [this] {
        take_grid();
        screen_->cmdAdd_Click();
        refresh();
    });
    connect(save_button, &QPushButton::clicked, this, [this] { save(); });
    connect(trans, &QPushButton::clicked, this, [this] {
        take_grid();
        take_lines();
        screen_->cmdtrans_Click();
        refresh();
    });
    connect(fatrans, &QPushButton::clicked, this, [this, fatrans] {
        take_grid();
        take_lines();
        screen_->cmdfatrans_Click(fatrans->text().remove('&').toStdString());
    });
    connect(add_line, &QPushButton::clicked, this, [this] {
        if (line_row_ < 0) return;
        take_lines();
        screen_->add_line(static_cast<std::size_t>(line_row_), view_);
        show_sub_view(line_row_, view_);
    });
    connect(save_lines, &QPushButton::clicked, this, [this] {
        if (line_row_ < 0) return;
        take_lines();
        screen_->save_sub_view(static_cast<std::size_t>(line_row_), view_);
        show_sub_view(line_row_, view_);
    });
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    connect(grid_, &QTableWidget::cellClicked, this, [this](int row, int col) {
        if (col == sched::colAdditions) show_sub_view(row, SubView::Additions);
        if (col == sched::colDeductions) show_sub_view(row, SubView::Deductions);
        if (col == sched::colCarried) show_sub_view(row, SubView::Carried);
    });

    auto* buttons = new QHBoxLayout;
    for (QPushButton* b : {add_row, del_row, save_button, trans, fatrans, dep_edit, print_it, print_books})
        buttons->addWidget(b);
    buttons->addStretch(1);
    buttons->addWidget(close);
    auto* line_buttons = new QHBoxLayout;
    line_buttons->addWidget(title_, 1);
    line_buttons->addWidget(add_line);
    line_buttons->addWidget(del_line);
    line_buttons->addWidget(save_lines);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(grid_, 3);
    layout->addLayout(line_buttons);
    layout->addWidget(lines_, 2);
    layout->addLayout(buttons);
    resize(1400, 640);
}

bool FixedAssetScheduleWindow::load() {
    if (!screen_->Form_Load()) return false;
    refresh();
    return true;
}

void FixedAssetScheduleWindow::refresh() {
    refreshing_ = true;
    auto& s = *screen_;
    const std::string books = s.books_heading();
    const QString heads[kColumns] = {"Particulars",
                                     QString::fromStdString(books + "\nCost"),
                                     QString::fromStdString(books + "\nDepreciation (Opening)"),
                                     QString::fromStdString(books + "\nRate"),
                                     QString::fromStdString(books + "\nMethod of Depreciation"),
                                     QString::fromStdString(books + "\nDepreciation for the year"),
                                     QString::fromStdString(books + "\nBlock"),
                                     "As per IT\nOpening WDV",
                                     "As per IT\nRate",
                                     "As per IT\nBlock",
                                     "Additions",
                                     "Deductions",
                                     "Block Nil",
                                     "Add. Dep. Rate",
                                     "",
                                     "Add. Dep. on Opening\n(For Plant & Machinery @ 40%)",
                                     "Higher Rate as per Old Table"};
    for (int c = 0; c < kColumns; ++c) grid_->setHorizontalHeaderItem(c, new QTableWidgetItem(heads[c]));
    grid_->setRowCount(static_cast<int>(s.vsFixed.size()));
    shown_dep_.assign(s.vsFixed.size(), QString());
    const auto figs = s.figures();
    std::size_t k = 0;
    for (int r = 0; r < grid_->rowCount(); ++r) {
        const auto& l = s.vsFixed[static_cast<std::size_t>(r)];
        const auto& f = l.row;
        const auto set = [&](int c, const QString& text, bool editable = true) {
            auto* item = new QTableWidgetItem(text);
            if (!editable) item->setFlags(item->flags() & ~Qt::ItemIsEditable);
            if (l.red) item->setForeground(Qt::red);
            grid_->setItem(r, c, item);
        };
        double dep = f.deptick ? f.depamt : f.method_id == 3 ? f.OTH_DEP : 0;
        if (!l.empty() && k < figs.size()) dep = figs[k++].books.depreciation;
        set(sched::colParticulars, QString::fromStdString(f.PART_NM));
        set(sched::colCost, money(f.OP_BAL));
        set(sched::colOpeningDep, money(f.op_bal_dep));
        set(sched::colRate, money(f.RATE_DEP));
        set(sched::colDepYear, money(dep));
        shown_dep_[static_cast<std::size_t>(r)] = money(dep);
        // A typed amount (or an "OTHER METHOD" one) is shown apart from a calculated one.
        if (f.deptick || f.method_id == 3)
            grid_->item(r, sched::colDepYear)->setBackground(QColor(255, 250, 205));
        set(sched::colWdv, money(f.wdv));
        set(sched::colItRate, money(f.compit_rate));
        set(sched::colAddDepRate, money(f.AddDepRt));
        set(sched::colAdditions, QString("(%1) ...").arg(l.additions.size()), false);
        set(sched::colDeductions, QString("(%1) ...").arg(l.deductions.size()), false);
        set(sched::colCarried, QString("(%1) ...").arg(l.carried.size()), false);
        auto* nil = new QTableWidgetItem;
        nil->setFlags(Qt::ItemIsEnabled | Qt::ItemIsUserCheckable);
        nil->setCheckState(f.trblock ? Qt::Checked : Qt::Unchecked);
        grid_->setItem(r, sched::colBlockNil, nil);
        grid_->setCellWidget(r, sched::colMethod,
                             combo_of(s.method_list_of(static_cast<std::size_t>(r)), f.method_id, grid_));
        grid_->setCellWidget(r, sched::colBooksBlock, combo_of(s.books_block_list(), f.CGrpId, grid_));
        grid_->setCellWidget(r, sched::colItBlock, combo_of(s.it_block_list(), f.IGrpId, grid_));
        grid_->setCellWidget(r, sched::colOldTable,
                             combo_of(FixedAssetSchedule::old_table_list(), l.old_table, grid_));
    }
    grid_->resizeColumnsToContents();
    grid_->setColumnWidth(sched::colParticulars, 220);
    if (line_row_ >= grid_->rowCount()) line_row_ = -1;
    if (line_row_ < 0) {
        // No row chosen yet: the additions' headings over an empty list.
        title_->setText(QString::fromStdString(FixedAssetSchedule::sub_view_title(SubView::Additions)));
        lines_->setRowCount(0);
        line_columns(SubView::Additions);
    }
    refreshing_ = false;
}

void FixedAssetScheduleWindow::take_grid() {
    auto& rows = screen_->vsFixed;
    for (int r = 0; r < grid_->rowCount() && r < static_cast<int>(rows.size()); ++r) {
        auto& l = rows[static_cast<std::size_t>(r)];
        auto& f = l.row;
        f.PART_NM = grid_->item(r, sched::colParticulars)->text().trimmed().toStdString();
        f.OP_BAL = number_of(grid_->item(r, sched::colCost));
        f.op_bal_dep = number_of(grid_->item(r, sched::colOpeningDep));
        f.RATE_DEP = number_of(grid_->item(r, sched::colRate));
        f.wdv = number_of(grid_->item(r, sched::colWdv));
        f.compit_rate = number_of(grid_->item(r, sched::colItRate));
        f.AddDepRt = number_of(grid_->item(r, sched::colAddDepRate));
        f.method_id = combo_id(grid_, r, sched::colMethod);
        f.CGrpId = combo_id(grid_, r, sched::colBooksBlock);
        f.IGrpId = combo_id(grid_, r, sched::colItBlock);
        l.old_table = static_cast<int>(combo_id(grid_, r, sched::colOldTable));
        f.trblock = grid_->item(r, sched::colBlockNil)->checkState() == Qt::Checked ? 1 : 0;
        // Only a depreciation the person typed over is taken; an emptied cell goes back
        // to the calculation.
        const QString typed = grid_->item(r, sched::colDepYear)->text().trimmed();
        if (static_cast<std::size_t>(r) < shown_dep_.size() &&
            typed != shown_dep_[static_cast<std::size_t>(r)])
            screen_->type_depreciation(
                static_cast<std::size_t>(r),
                typed.isEmpty() ? std::nullopt : std::optional<double>(typed.toDouble()));
    }
}

void FixedAssetScheduleWindow::show_sub_view(int row, SubView view) {
    take_grid();
    line_row_ = row;
    view_ = view;
    title_->setText(QString::fromStdString(FixedAssetSchedule::sub_view_title(view)));
    // The particular whose list is shown stays marked in the grid.
    grid_->selectRow(row);
    const auto& l = screen_->vsFixed[static_cast<std::size_t>(row)];
    const auto& list = view == SubView::Additions    ? l.additions
                       : view == SubView::Deductions ? l.deductions
                                                     : l.carried;
    lines_->setRowCount(static_cast<int>(list.size()));
    for (int r = 0; r < lines_->rowCount(); ++r) {
        const auto& a = list[static_cast<std::size_t>(r)];
        const QString cells[12] = {QString::fromStdString(a.particular),
                                   money(a.cost),
                                   money(a.excr),
                                   money(a.curdiff),
                                   money(a.grsub),
                                   money(a.AMT),
                                   QString::fromStdString(a.ad_date),
                                   QString::fromStdString(a.dtpur),
                                   money(a.dep),
                                   a.fulldep ? "Yes" : "No",
                                   QString::number(a.src),
                                   QString::fromStdString(a.adddepapp == "1" ? "Yes" : "No")};
        for (int c = 0; c < 12; ++c) lines_->setItem(r, c, new QTableWidgetItem(cells[c]));
        if (view == SubView::Deductions)
            lines_->setCellWidget(
                r, 10, combo_of(screen_->source_list(static_cast<std::size_t>(row)), a.src, lines_));
    }
    line_columns(view);
}

void FixedAssetScheduleWindow::line_columns(SubView view) {
    const auto heads = screen_->sub_view_headings(view);
    for (int c = 0; c < 12; ++c)
        lines_->setHorizontalHeaderItem(c, new QTableWidgetItem(QString::fromStdString(heads[c])));
    // Only what the kind of line uses.
    lines_->setColumnHidden(8, view != SubView::Deductions);
    lines_->setColumnHidden(10, view != SubView::Deductions);
    lines_->setColumnHidden(9, view != SubView::Additions);
    lines_->setColumnHidden(11, view != SubView::Additions);
    lines_->resizeColumnsToContents();
}

void FixedAssetScheduleWindow::take_lines() {
    if (line_row_ < 0 || line_row_ >= static_cast<int>(screen_->vsFixed.size())) return;
    auto& l = screen_->vsFixed[static_cast<std::size_t>(line_row_)];
    auto& list = view_ == SubView::Additions    ? l.additions
                 : view_ == SubView::Deductions ? l.deductions
                                                : l.carried;
    for (int r = 0; r < lines_->rowCount() && r < static_cast<int>(list.size()); ++r) {
        auto& a = list[static_cast<std::size_t>(r)];
        const auto text = [&](int c) {
            return lines_->item(r, c) ? lines_->item(r, c)->text().trimmed() : QString();
        };
        a.particular = text(0).toStdString();
        a.cost = text(1).toDouble();
        a.excr = text(2).toDouble();
        a.curdiff = text(3).toDouble();
        a.grsub = text(4).toDouble();
        a.AMT = text(5).toDouble();
        a.ad_date = text(6).toStdString();
        a.dtpur = text(7).toStdString();
        a.dep = text(8).toDouble();
        a.fulldep = text(9).startsWith('Y', Qt::CaseInsensitive) ? 1 : 0;
        if (view_ == SubView::Deductions && combo_id(lines_, r, 10) != a.src)
            screen_->set_source(static_cast<std::size_t>(line_row_), static_cast<std::size_t>(r),
                                combo_id(lines_, r, 10));
        a.adddepapp.assign(1, text(11).startsWith('Y', Qt::CaseInsensitive) ? '1' : '0');
    }
}

void FixedAssetScheduleWindow::delete_row() {
    const int row = grid_->currentRow();
    if (row < 0 || row >= static_cast<int>(screen_->vsFixed.size())) return;
    take_grid();
    take_lines();
    if (!screen_->cmddel_Click(static_cast<std::size_t>(row))) return;
    if (line_row_ == row) line_row_ = -1;
    if (line_row_ > row) --line_row_;
    refresh();
    if (line_row_ >= 0) show_sub_view(line_row_, view_);
}

void FixedAssetScheduleWindow::delete_line() {
    const int line = lines_->currentRow();
    if (line_row_ < 0 || line < 0) return;
    take_grid();
    take_lines();
    if (!screen_->delete_line(static_cast<std::size_t>(line_row_), view_, static_cast<std::size_t>(line)))
        return;
    // The row's figures follow the lines left.
    const int row = line_row_;
    refresh();
    show_sub_view(row, view_);
}

void FixedAssetScheduleWindow::save() {
    take_grid();
    take_lines();
    screen_->cmdSave_Click();
    refresh();
}

void FixedAssetScheduleWindow::print(bool income_tax) {
    if (!component_.report) return;
    take_grid();
    take_lines();
    const auto cy = store::find_client_year(component_.base->dbobj(), screen_->code(), screen_->year());
    const sched::ChartClient client{screen_->code(), cy ? cy->client_name : std::string()};
    sched::ClsDepC charts(*component_.report);
    if (income_tax)
        charts.print_income_tax(screen_->figures(), screen_->year(), client);
    else
        charts.print_books(screen_->figures(), screen_->year(), client);
}

QWidget* open_fixed_asset_schedule(frame::Component& component, QWidget* parent) {
    auto* w = new FixedAssetScheduleWindow(component, parent);
    w->setWindowFlag(Qt::Window);
    w->setAttribute(Qt::WA_DeleteOnClose);
    if (!w->load()) {
        delete w;
        return nullptr;
    }
    w->show();
    return w;
}

void run_merge_entries(QWidget* parent,
                       const std::function<bool(Ui&, bool, const std::vector<long>&)>& merge) {
    QDialog dialog(parent);
    dialog.setWindowTitle("Merge Assets");
    auto* serials = new QLineEdit(&dialog);
    serials->setPlaceholderText("Serial numbers, e.g. 3 5 8");
    auto* opening = new QRadioButton("Opening Assets", &dialog);
    auto* additions = new QRadioButton("Additions", &dialog);
    opening->setChecked(true);
    auto* box = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    QObject::connect(box, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    QtUi ui(&dialog);
    QObject::connect(box, &QDialogButtonBox::accepted, &dialog, [&] {
        std::vector<long> chosen;
        for (const auto& word : serials->text().split(' ', Qt::SkipEmptyParts))
            chosen.push_back(word.toLong());
        if (merge(ui, additions->isChecked(), chosen)) dialog.accept();
    });
    auto* layout = new QVBoxLayout(&dialog);
    layout->addWidget(new QLabel("Entries of one asset group to merge into the first:", &dialog));
    layout->addWidget(serials);
    layout->addWidget(opening);
    layout->addWidget(additions);
    layout->addWidget(box);
    dialog.exec();
}

}  // namespace brenlow::ui

#include "app/tarrow/client_dialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSpinBox>
#include <QTableWidget>
#include <QVBoxLayout>

#include "store/client_code.h"

namespace brenlow::tarrow {

QString fy_label(int year) {
    return QString("%1-%2").arg(year - 1).arg(year % 100, 2, 10, QChar('0'));
}

ClientDialog::ClientDialog(const std::vector<store::ClientYear>& years, int default_year, QWidget* parent)
    : QDialog(parent), years_(years) {
    setWindowTitle("Select Client and Financial Year");
    auto* layout = new QVBoxLayout(this);

    auto* existing = new QGroupBox("Clients", this);
    auto* el = new QVBoxLayout(existing);
    list_ = new QTableWidget(static_cast<int>(years_.size()), 4, existing);
    list_->setHorizontalHeaderLabels({"Code", "Name", "F.Y.", "Status"});
    list_->setSelectionBehavior(QAbstractItemView::SelectRows);
    list_->setSelectionMode(QAbstractItemView::SingleSelection);
    list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list_->horizontalHeader()->setStretchLastSection(true);
    list_->verticalHeader()->hide();
    for (int r = 0; r < static_cast<int>(years_.size()); ++r) {
        const auto& y = years_[static_cast<std::size_t>(r)];
        list_->setItem(r, 0, new QTableWidgetItem(QString::fromStdString(y.code_no)));
        list_->setItem(r, 1, new QTableWidgetItem(QString::fromStdString(y.client_name)));
        list_->setItem(r, 2, new QTableWidgetItem(fy_label(y.year)));
        list_->setItem(r, 3, new QTableWidgetItem(QString::number(y.status)));
    }
    list_->resizeColumnsToContents();
    if (!years_.empty()) list_->selectRow(0);
    connect(list_, &QTableWidget::cellDoubleClicked, this, &ClientDialog::open_selected);
    el->addWidget(list_);
    auto* open = new QPushButton("&Open", existing);
    open->setEnabled(!years_.empty());
    connect(open, &QPushButton::clicked, this, &ClientDialog::open_selected);
    el->addWidget(open, 0, Qt::AlignRight);
    layout->addWidget(existing);

    auto* fresh = new QGroupBox("New client or financial year", this);
    auto* form = new QFormLayout(fresh);
    code_ = new QLineEdit(fresh);
    code_->setMaxLength(static_cast<int>(store::kClientCodeMax));
    name_ = new QLineEdit(fresh);
    year_ = new QSpinBox(fresh);
    year_->setRange(1990, 2099);
    year_->setValue(default_year);
    year_->setSuffix("  (financial year ending 31 March)");
    status_ = new QComboBox(fresh);
    status_->addItem("1 - Individual / Proprietor", 1);
    status_->addItem("2 - Firm", 2);
    status_->addItem("3 - Company", 3);
    status_->addItem("4 - Company (other)", 4);
    form->addRow("Client &code", code_);
    form->addRow("&Name", name_);
    form->addRow("&Year", year_);
    form->addRow("&Status", status_);
    auto* create = new QPushButton("&Create", fresh);
    connect(create, &QPushButton::clicked, this, &ClientDialog::create_new);
    form->addRow(create);
    layout->addWidget(fresh);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    resize(560, 460);
}

void ClientDialog::open_selected() {
    const int r = list_->currentRow();
    if (r < 0 || r >= static_cast<int>(years_.size())) return;
    const auto& y = years_[static_cast<std::size_t>(r)];
    choice_ = ClientChoice{QString::fromStdString(y.code_no), y.year, false, {}, y.status};
    accept();
}

void ClientDialog::create_new() {
    const QString code = code_->text().trimmed().toUpper();
    if (code.isEmpty()) {
        QMessageBox::information(this, windowTitle(), "Please enter the client code.");
        code_->setFocus();
        return;
    }
    // QString::toUpper folds more than A-Z; the rule decides on the typed text.
    if (const auto fault = store::client_code_fault(code_->text().toStdString())) {
        QMessageBox::information(this, windowTitle(), QString::fromStdString(*fault));
        code_->setFocus();
        return;
    }
    choice_ = ClientChoice{code, year_->value(), true, name_->text().trimmed().toUpper(),
                           status_->currentData().toInt()};
    accept();
}

}  // namespace brenlow::tarrow

#include "app/tarrow/client_dialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QTableWidget>
#include <QVBoxLayout>

#include "store/client_code.h"

namespace brenlow::tarrow {

QString fy_label(int year) {
    return QString("%1-%2").arg(year - 1).arg(year % 100, 2, 10, QChar('0'));
}

QString status_name(int status) {
    return QString::fromStdString(masters::client_status_name(status));
}

namespace {

void fill_combo(QComboBox* box, const ComboBox& combo) {
    if (box->count() != static_cast<int>(combo.List.size())) {
        box->clear();
        for (const auto& item : combo.List.items())
            box->addItem(QString::fromStdString(item.text), QString::fromStdString(item.id));
    }
    box->setCurrentIndex(combo.ListIndex);
}

}  // namespace

ClientPanel::ClientPanel(const std::vector<store::ClientYear>& years, int default_year, QWidget* parent)
    : QWidget(parent) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);

    existing_ = new QGroupBox("Clients", this);
    auto* el = new QVBoxLayout(existing_);
    list_ = new QTableWidget(0, 4, existing_);
    list_->setObjectName("clients");
    list_->setHorizontalHeaderLabels({"Code", "Name", "F.Y.", "Status"});
    list_->setSelectionBehavior(QAbstractItemView::SelectRows);
    list_->setSelectionMode(QAbstractItemView::SingleSelection);
    list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    // The name takes what is left over; code, year and status keep their whole width
    // (the scroll bar comes out of the name, never out of the status).
    list_->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    list_->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    list_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    list_->verticalHeader()->hide();
    connect(list_, &QTableWidget::cellDoubleClicked, this, &ClientPanel::open_selected);
    el->addWidget(list_);
    open_ = new QPushButton("&Open", existing_);
    connect(open_, &QPushButton::clicked, this, &ClientPanel::open_selected);
    el->addWidget(open_, 0, Qt::AlignRight);
    layout->addWidget(existing_, 1);

    fresh_ = new QGroupBox("New client or financial year", this);
    auto* form = new QFormLayout(fresh_);
    code_ = new QLineEdit(fresh_);
    code_->setObjectName("code");
    code_->setMaxLength(static_cast<int>(store::kClientCodeMax));
    name_ = new QLineEdit(fresh_);
    name_->setObjectName("name");
    year_ = new QSpinBox(fresh_);
    year_->setObjectName("year");
    year_->setRange(1990, 2099);
    year_->setValue(default_year);
    year_->setSuffix("  (financial year ending 31 March)");
    status_ = new QComboBox(fresh_);
    status_->setObjectName("status");
    kind_ = new QComboBox(fresh_);
    kind_->setObjectName("kind");
    kind_from_ = new QLabel(fresh_);
    // A choice however made (click, keys, a program) goes to the form.
    connect(status_, &QComboBox::currentIndexChanged, this, [this](int i) {
        form_.cboStatus_Click(i);
        show_form();
    });
    connect(kind_, &QComboBox::currentIndexChanged, this, [this](int i) {
        form_.cboKind_Click(i);
        show_form();
    });
    auto* kind_line = new QHBoxLayout;
    kind_line->addWidget(kind_, 1);
    kind_line->addWidget(kind_from_);
    form->addRow("Client co&de", code_);
    form->addRow("&Name", name_);
    form->addRow("&Year", year_);
    form->addRow("S&tatus", status_);
    form->addRow("&Kind of Assessee", kind_line);
    show_form();
    create_ = new QPushButton("C&reate", fresh_);
    connect(create_, &QPushButton::clicked, this, &ClientPanel::create_new);
    connect(code_, &QLineEdit::returnPressed, this, &ClientPanel::create_new);
    connect(name_, &QLineEdit::returnPressed, this, &ClientPanel::create_new);
    form->addRow(create_);
    layout->addWidget(fresh_);
    set_years(years);
}

void ClientPanel::show_form() {
    const QSignalBlocker quiet_status(status_), quiet_kind(kind_);
    fill_combo(status_, form_.cboStatus);
    fill_combo(kind_, form_.cboKind);
    kind_from_->setText(QString::fromStdString(form_.lblKindFrom));
}

void ClientPanel::set_years(const std::vector<store::ClientYear>& years) {
    years_ = years;
    fill_list();
    existing_->setVisible(!years_.empty());
    fresh_->setTitle(years_.empty() ? "No client yet: create the first one" : "New client or financial year");
    if (years_.empty()) code_->setFocus();
}

void ClientPanel::fill_list() {
    list_->setRowCount(static_cast<int>(years_.size()));
    for (int r = 0; r < static_cast<int>(years_.size()); ++r) {
        const auto& y = years_[static_cast<std::size_t>(r)];
        const QString name = QString::fromStdString(y.client_name);
        list_->setItem(r, 0, new QTableWidgetItem(QString::fromStdString(y.code_no)));
        auto* name_item = new QTableWidgetItem(name);
        name_item->setToolTip(name);
        list_->setItem(r, 1, name_item);
        list_->setItem(r, 2, new QTableWidgetItem(fy_label(y.year)));
        list_->setItem(r, 3, new QTableWidgetItem(status_name(y.status)));
    }
    if (!years_.empty()) list_->selectRow(0);
    open_->setEnabled(!years_.empty());
}

void ClientPanel::open_selected() {
    const int r = list_->currentRow();
    if (r < 0 || r >= static_cast<int>(years_.size())) return;
    const auto& y = years_[static_cast<std::size_t>(r)];
    emit chosen(ClientChoice{QString::fromStdString(y.code_no), y.year, false, {}, y.status, std::nullopt});
}

void ClientPanel::create_new() {
    const QString code = code_->text().trimmed().toUpper();
    if (code.isEmpty()) {
        QMessageBox::information(this, "Tarrow", "Please enter the client code.");
        code_->setFocus();
        return;
    }
    // QString::toUpper folds more than A-Z; the rule decides on the typed text.
    if (const auto fault = store::client_code_fault(code_->text().toStdString())) {
        QMessageBox::information(this, "Tarrow", QString::fromStdString(*fault));
        code_->setFocus();
        return;
    }
    emit chosen(ClientChoice{code, year_->value(), true, name_->text().trimmed().toUpper(), form_.status(),
                             form_.kind_to_record()});
}

ClientDialog::ClientDialog(const std::vector<store::ClientYear>& years, int default_year, QWidget* parent)
    : QDialog(parent) {
    setWindowTitle("Select Client and Financial Year");
    auto* layout = new QVBoxLayout(this);
    panel_ = new ClientPanel(years, default_year, this);
    connect(panel_, &ClientPanel::chosen, this, [this](const ClientChoice& c) {
        choice_ = c;
        accept();
    });
    layout->addWidget(panel_);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    resize(640, 480);
}

ClientKindDialog::ClientKindDialog(store::Database& db, const store::ClientYear& client, QWidget* parent)
    : QDialog(parent), db_(db), code_(client.code_no) {
    setWindowTitle("Client Details");
    form_.load(db, client.code_no, client.status);
    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    form->addRow("Client code", new QLabel(QString::fromStdString(client.code_no), this));
    form->addRow("Name", new QLabel(QString::fromStdString(client.client_name), this));
    form->addRow("Status", new QLabel(status_name(client.status), this));
    kind_ = new QComboBox(this);
    kind_->setObjectName("kind");
    kind_from_ = new QLabel(this);
    connect(kind_, &QComboBox::currentIndexChanged, this, [this](int i) {
        form_.cboKind_Click(i);
        show_form();
    });
    auto* kind_line = new QHBoxLayout;
    kind_line->addWidget(kind_, 1);
    kind_line->addWidget(kind_from_);
    form->addRow("&Kind of Assessee", kind_line);
    layout->addLayout(form);
    auto* buttons = new QDialogButtonBox(this);
    save_ = buttons->addButton("&Save", QDialogButtonBox::AcceptRole);
    buttons->addButton(QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(save_, &QPushButton::clicked, this, [this] {
        try {
            form_.save_kind(db_, code_);
        } catch (const std::exception&) {
            QMessageBox::critical(this, "Tarrow", "The kind of assessee could not be saved.");
            kind_->setFocus();
            return;
        }
        accept();
    });
    layout->addWidget(buttons);
    show_form();
}

void ClientKindDialog::show_form() {
    const QSignalBlocker quiet(kind_);
    fill_combo(kind_, form_.cboKind);
    kind_from_->setText(QString::fromStdString(form_.lblKindFrom));
}

}  // namespace brenlow::tarrow

// The register window's entry frames: the opening entry (books and income-tax
// halves side by side, the adjustments below), the addition, and the sale or
// deduction with its extra shifts and the year's depreciation.

#include <QButtonGroup>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QItemSelectionModel>
#include <QVBoxLayout>

#include "ui/grid_table_model.h"
#include "ui/register_window.h"

namespace brenlow::ui {
namespace {

using S = reg::frmNewFATR;

QString q(const std::string& s) {
    return QString::fromStdString(s);
}

std::string s(const QString& t) {
    return t.toStdString();
}

QLabel* heading(const QString& text, QWidget* parent) {
    return new QLabel("<b>" + text + "</b>", parent);
}

}  // namespace

QWidget* RegisterWindow::build_opening_frame() {
    auto* frame = new QGroupBox("Opening Asset", this);
    // The books half and the income-tax half side by side, so that both are in sight
    // on a laptop's screen; the adjustments below them. Tab goes down the books half,
    // then down the income-tax half, then through the adjustments.
    auto* outer = new QVBoxLayout(frame);
    auto* halves = new QHBoxLayout;
    auto* books = new QGridLayout;
    auto* tax = new QGridLayout;
    auto* below = new QGridLayout;
    halves->addLayout(books, 1);
    halves->addSpacing(12);
    halves->addLayout(tax, 1);
    outer->addLayout(halves);
    outer->addLayout(below);
    QGridLayout* layout = books;
    txtfieldsO_.resize(S::O_Count);
    lblfieldsO_.resize(S::O_Count);
    chkfieldsO_.resize(S::O_Count, nullptr);
    for (int i = 0; i < S::O_Count; ++i) {
        txtfieldsO_[i] = entry_field(screen_->txtfieldsO[i], frame);
        txtfieldsO_[i]->setObjectName(QString("O%1").arg(i));
        lblfieldsO_[i] = new QLabel(frame);
        lblfieldsO_[i]->setBuddy(txtfieldsO_[i]);
        bind_leave(txtfieldsO_[i], [this, i] { return screen_->txtfieldsO_Validate(i); });
        bind_change(txtfieldsO_[i], [this, i] { screen_->txtfieldsO_Change(i); });
        if (screen_->chkfieldsO[i].Enabled) {
            chkfieldsO_[i] = new QCheckBox(frame);
            chkfieldsO_[i]->setObjectName(QString("chkO%1").arg(i));
            connect(chkfieldsO_[i], &QCheckBox::clicked, this,
                    [this, i] { run([&] { screen_->chkfieldsO_Click(i); }); });
        }
    }
    int r = 0;
    layout->addWidget(heading(q(screen_->lblBooksHeading), frame), r++, 0, 1, 3);
    const auto row = [&](int i) {
        layout->addWidget(lblfieldsO_[i], r, 0);
        layout->addWidget(txtfieldsO_[i], r, 1);
        if (chkfieldsO_[i]) layout->addWidget(chkfieldsO_[i], r, 2);
        ++r;
    };
    row(S::O_PutDate);
    row(S::O_CostWdv);
    row(S::O_OpDepr);
    cboCalcCA_ = new QComboBox(frame);
    cboCalcCA_->setObjectName("cboCalcCA");
    connect(cboCalcCA_, &QComboBox::activated, this,
            [this](int i) { run([&] { screen_->cboCalcCA_Click(i); }); });
    txtCalcCA_ = entry_field(screen_->txtCalcCA, frame);
    txtCalcCA_->setObjectName("txtCalcCA");
    bind_change(txtCalcCA_, [this] { screen_->txtfieldsO_Change(S::O_CostWdv); });
    auto* calc_ca_label = new QLabel(q(screen_->lblCalcCA), frame);
    calc_ca_label->setWordWrap(true);
    layout->addWidget(calc_ca_label, r, 0);
    layout->addWidget(cboCalcCA_, r, 1);
    layout->addWidget(txtCalcCA_, r++, 2);
    row(S::O_ResValue);
    cboResValOfO_ = new QComboBox(frame);
    cboResValOfO_->setObjectName("cboResValOfO");
    connect(cboResValOfO_, &QComboBox::activated, this,
            [this](int i) { run([&] { screen_->cboResValOfO_Click(i); }); });
    layout->addWidget(new QLabel(q(screen_->lblResValOfO), frame), r, 0);
    layout->addWidget(cboResValOfO_, r++, 1);
    row(S::O_LifeYrs);
    lblRemLifeO_ = new QLabel(frame);
    layout->addWidget(lblRemLifeO_, r++, 0, 1, 3);
    row(S::O_RateFACL);
    cboMODo_ = new QComboBox(frame);
    cboMODo_->setObjectName("cboMODo");
    connect(cboMODo_, &QComboBox::activated, this,
            [this](int i) { run([&] { screen_->cboMODo_Click(i); }); });
    layout->addWidget(new QLabel("Method of Depreciation", frame), r, 0);
    layout->addWidget(cboMODo_, r++, 1);
    books->setRowStretch(r, 1);
    books->setColumnStretch(1, 1);
    layout = tax;
    r = 0;
    layout->addWidget(heading("For Calculation as per Income-Tax Act 1961", frame), r++, 0, 1, 3);
    lblBlockO_ = new QLabel(frame);
    layout->addWidget(lblBlockO_, r++, 0, 1, 3);
    row(S::O_WdvIT);
    row(S::O_RateIT);
    row(S::O_AddlDepRT);
    auto* choices = new QVBoxLayout;
    auto* group = new QButtonGroup(frame);
    const char* texts[] = {"Other", "Asset does not Exist", "Asset Exists but WDV is NIL"};
    for (int c = 0; c < 3; ++c) {
        optsWdvIT_[c] = new QRadioButton(texts[c], frame);
        optsWdvIT_[c]->setObjectName(QString("optsWdvIT%1").arg(c));
        group->addButton(optsWdvIT_[c]);
        choices->addWidget(optsWdvIT_[c]);
        connect(optsWdvIT_[c], &QRadioButton::clicked, this,
                [this, c] { run([&] { screen_->optsWdvIT_Click(c); }); });
    }
    layout->addLayout(choices, r++, 0, 1, 3);
    chkfieldsO_[S::O_AddlDepOn]->setText(q(screen_->chkfieldsO[S::O_AddlDepOn].Caption));
    layout->addWidget(chkfieldsO_[S::O_AddlDepOn], r++, 0, 1, 3);
    layout->addWidget(txtfieldsO_[S::O_AddlDepOn], r++, 1);
    lblfieldsO_[S::O_AddlDepOn]->hide();
    tax->setRowStretch(r, 1);
    tax->setColumnStretch(1, 1);
    layout = below;
    r = 0;
    layout->addWidget(
        heading("Adjustment on Account of Excess Sale/Deduction of Other Assets in Block (if any) in "
                "Earlier Years",
                frame),
        r++, 0, 1, 3);
    vsESA_ = grid_view(screen_->vsESA, &vsESA_row_, frame);
    vsESA_->setObjectName("vsESA");
    vsESA_->setMinimumHeight(90);
    layout->addWidget(vsESA_, r++, 0, 1, 3);
    auto* esa = new QHBoxLayout;
    const char* hints[] = {"Particulars", "WDV", "Date", "Amount", "Excess", "Adjust"};
    for (int c = 0; c < 6; ++c) {
        esaInput_[c] = new QLineEdit(frame);
        esaInput_[c]->setObjectName(QString("esa%1").arg(c));
        esaInput_[c]->setPlaceholderText(hints[c]);
        esa->addWidget(esaInput_[c], c == 0 ? 2 : 1);
    }
    esa->addWidget(button(
        "Add Ro&w",
        [this] {
            if (screen_->AddESARow(s(esaInput_[0]->text()), s(esaInput_[1]->text()), s(esaInput_[2]->text()),
                                   s(esaInput_[3]->text()), s(esaInput_[4]->text()), s(esaInput_[5]->text())))
                for (auto* e : esaInput_) e->clear();
        },
        frame));
    esa->addWidget(button(
        "Remo&ve Row", [this] { screen_->RemoveESARow(vsESA_row_); }, frame));
    layout->addLayout(esa, r++, 0, 1, 3);
    // The amount to be adjusted is changed in place, within the row's excess.
    connect(vsESA_, &QAbstractItemView::doubleClicked, this, [this](const QModelIndex& index) {
        const int grid_row = vsESA_->grid_model()->grid_row(index.row());
        const auto typed =
            ui().input_box("Amount To be Adjusted", "Adjustment", screen_->vsESA.display_text(grid_row, 5));
        if (typed) run([&] { screen_->vsESA_ValidateEdit(grid_row, *typed); });
    });
    chkTotESA_ = new QCheckBox("Gross", frame);
    chkTotESA_->setObjectName("chkTotESA");
    connect(chkTotESA_, &QCheckBox::clicked, this, [this] { run([&] { screen_->chkTotESA_Click(); }); });
    txtTotESA_ = entry_field(screen_->txtTotESA, frame);
    txtTotESA_->setObjectName("txtTotESA");
    bind_leave(txtTotESA_, [this] {
        screen_->txtTotESA_Validate();
        return true;
    });
    layout->addWidget(chkTotESA_, r, 0);
    layout->addWidget(txtTotESA_, r++, 1);
    layout->setColumnStretch(1, 1);
    return frame;
}

QWidget* RegisterWindow::build_addition_frame() {
    auto* frame = new QGroupBox("Addition during the Year", this);
    auto* layout = new QGridLayout(frame);
    txtfieldsA_.resize(S::A_Count);
    lblfieldsA_.resize(S::A_Count);
    chkfieldsA_.resize(S::A_Count, nullptr);
    for (int i = 0; i < S::A_Count; ++i) {
        txtfieldsA_[i] = entry_field(screen_->txtfieldsA[i], frame);
        txtfieldsA_[i]->setObjectName(QString("A%1").arg(i));
        lblfieldsA_[i] = new QLabel(frame);
        lblfieldsA_[i]->setBuddy(txtfieldsA_[i]);
        bind_leave(txtfieldsA_[i], [this, i] { return screen_->txtfieldsA_Validate(i); });
        bind_change(txtfieldsA_[i], [this, i] { screen_->txtfieldsA_Change(i); });
        if (screen_->chkfieldsA[i].Enabled) {
            chkfieldsA_[i] = new QCheckBox(frame);
            chkfieldsA_[i]->setObjectName(QString("chkA%1").arg(i));
            connect(chkfieldsA_[i], &QCheckBox::clicked, this,
                    [this, i] { run([&] { screen_->chkfieldsA_Click(i); }); });
        }
    }
    int r = 0;
    const auto row = [&](int i) {
        layout->addWidget(lblfieldsA_[i], r, 0);
        layout->addWidget(txtfieldsA_[i], r, 1);
        if (chkfieldsA_[i]) layout->addWidget(chkfieldsA_[i], r, 2);
        ++r;
    };
    for (int i : {S::A_PutDate, S::A_AccDate, S::A_PurAmt, S::A_ExciseCr, S::A_CurrDiff, S::A_Subsidy})
        row(i);
    lblMiscAdjA_ = new QLabel(frame);
    lblNetAmtA_ = new QLabel(frame);
    layout->addWidget(new QLabel("Misc. Adjustments", frame), r, 0);
    layout->addWidget(lblMiscAdjA_, r++, 1);
    layout->addWidget(new QLabel("Net Amount", frame), r, 0);
    layout->addWidget(lblNetAmtA_, r++, 1);
    layout->addWidget(heading(q(screen_->lblBooksHeading), frame), r++, 0, 1, 3);
    row(S::A_ResValue);
    row(S::A_LifeYrs);
    lblRemLifeA_ = new QLabel(frame);
    layout->addWidget(lblRemLifeA_, r++, 0, 1, 3);
    row(S::A_RateFACL);
    cboMODa_ = new QComboBox(frame);
    cboMODa_->setObjectName("cboMODa");
    connect(cboMODa_, &QComboBox::activated, this,
            [this](int i) { run([&] { screen_->cboMODa_Click(i); }); });
    layout->addWidget(new QLabel("Method of Depreciation", frame), r, 0);
    layout->addWidget(cboMODa_, r++, 1);
    cboRndAddRtAuto_ = new QComboBox(frame);
    cboRndAddRtAuto_->setObjectName("cboRndAddRtAuto");
    connect(cboRndAddRtAuto_, &QComboBox::activated, this,
            [this](int i) { run([&] { screen_->cboRndAddRtAuto_Click(i); }); });
    layout->addWidget(cboRndAddRtAuto_, r++, 1, 1, 2);
    layout->addWidget(heading("For Calculation as per Income-Tax Act 1961", frame), r++, 0, 1, 3);
    lblBlockA_ = new QLabel(frame);
    layout->addWidget(lblBlockA_, r++, 0, 1, 3);
    row(S::A_RateIT);
    row(S::A_AddlDepRT);
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(r, 1);
    return frame;
}

QWidget* RegisterWindow::build_sale_frame() {
    auto* box = new QWidget(this);
    auto* outer = new QVBoxLayout(box);
    outer->setContentsMargins(0, 0, 0, 0);
    auto* sale = new QGroupBox("Details of Sale/Deduction", box);
    auto* form = new QFormLayout(sale);
    txtfieldsD_.resize(S::D_Count);
    for (int i = 0; i < S::D_Count; ++i) {
        txtfieldsD_[i] = entry_field(screen_->txtfieldsD[i], sale);
        txtfieldsD_[i]->setObjectName(QString("D%1").arg(i));
        bind_leave(txtfieldsD_[i], [this, i] { return screen_->txtfieldsD_Validate(i); });
        form->addRow(q(screen_->lblfieldsD[i]), txtfieldsD_[i]);
    }
    chkPartDed_ = new QCheckBox(q(screen_->chkPartDed.Caption), sale);
    chkPartDed_->setObjectName("chkPartDed");
    connect(chkPartDed_, &QCheckBox::clicked, this, [this] { run([&] { screen_->chkPartDed_Click(); }); });
    form->addRow(chkPartDed_);
    outer->addWidget(sale);
    auto* shifts = new QGroupBox("Extra Shift", box);
    auto* shift_layout = new QVBoxLayout(shifts);
    lblNESD_ = new QLabel(shifts);
    shift_layout->addWidget(lblNESD_);
    vsS_ = new GridView(shifts);
    vsS_->setObjectName("vsS");
    vsS_->show_grid(screen_->vsS);
    vsS_->setMinimumHeight(90);
    shift_layout->addWidget(vsS_);
    auto* shift_buttons = new QHBoxLayout;
    shift_buttons->addWidget(button(
        "Add S&hift", [this] { screen_->AddShiftRow("", "", 1); }, shifts));
    shift_buttons->addWidget(button(
        "Remove Shif&t",
        [this] {
            if (auto* m = vsS_->selectionModel(); m && m->currentIndex().isValid())
                screen_->RemoveShiftRow(vsS_->grid_model()->grid_row(m->currentIndex().row()));
        },
        shifts));
    shift_buttons->addWidget(button(
        "Check Shi&fts", [this] { screen_->cmdShiftOK_Click(); }, shifts));
    shift_layout->addLayout(shift_buttons);
    lblShiftDays_ = new QLabel(shifts);
    lblShiftDays_->setWordWrap(true);
    shift_layout->addWidget(lblShiftDays_);
    outer->addWidget(shifts);
    auto* depr = new QGroupBox("Depreciation for the Year", box);
    auto* depr_layout = new QFormLayout(depr);
    chkAutoCalcDeprCL_ = new QCheckBox(q(screen_->chkAutoCalcDeprCL.Caption), depr);
    chkAutoCalcDeprCL_->setObjectName("chkAutoCalcDeprCL");
    connect(chkAutoCalcDeprCL_, &QCheckBox::clicked, this,
            [this] { run([&] { screen_->chkAutoCalcDeprCL_Click(); }); });
    txtAutoCalcDeprCL_ = entry_field(screen_->txtAutoCalcDeprCL, depr);
    txtAutoCalcDeprCL_->setObjectName("txtAutoCalcDeprCL");
    lblDaysDeprCL_ = new QLabel(depr);
    depr_layout->addRow(chkAutoCalcDeprCL_, txtAutoCalcDeprCL_);
    depr_layout->addRow("Days", lblDaysDeprCL_);
    outer->addWidget(depr);
    outer->addStretch(1);
    return box;
}

}  // namespace brenlow::ui

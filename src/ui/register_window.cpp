#include "ui/register_window.h"

#include <QApplication>
#include <QButtonGroup>
#include <QDialog>
#include <QFontDatabase>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QSplitter>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

#include "register/chart_report.h"
#include "ui/chart_editor_window.h"
#include "ui/grid_table_model.h"
#include "ui/masters_windows.h"

namespace brenlow::ui {
namespace {

using S = reg::frmNewFATR;

QString q(const std::string& s) {
    return QString::fromStdString(s);
}

// The Ui is made before the screen that holds on to it.
struct OwnUi {
    explicit OwnUi(QWidget* host) : own_ui(host) {}
    QtUi own_ui;
};

class DesktopRegisterScreen : private OwnUi, public S {
public:
    DesktopRegisterScreen(frame::Component& component, QWidget* host) : OwnUi(host), S(component, own_ui) {}
    QtUi& window_ui() { return own_ui; }
};
std::string s(const QString& t) {
    return t.toStdString();
}

QLabel* heading(const QString& text, QWidget* parent) {
    auto* l = new QLabel("<b>" + text + "</b>", parent);
    return l;
}

}  // namespace

RegisterWindow::RegisterWindow(frame::Component& component, QWidget* parent)
    : ScreenWindow(parent), component_(component), screen_(std::make_shared<S>(component, ui())) {
    screen_->Form_Load();
    build();
}

RegisterWindow::RegisterWindow(std::shared_ptr<S> screen, frame::Component& component, QWidget* parent)
    : ScreenWindow(parent), component_(component), screen_(std::move(screen)) {
    if (auto* own = dynamic_cast<DesktopRegisterScreen*>(screen_.get())) own->window_ui().set_window(this);
    if (screen_->Year() == 0) screen_->Form_Load();
    build();
}

RegisterWindow::~RegisterWindow() {
    // The picker's combo goes before its grid view and model.
    delete group_;
    group_ = nullptr;
    drop_grid_views();
}

// Back to the register from the group master (or anywhere): changed groups are read again.
bool RegisterWindow::event(QEvent* e) {
    if (e->type() == QEvent::WindowActivate && !refreshing_ && !QApplication::activeModalWidget() &&
        screen_->Form_Activate())
        refresh();
    return ScreenWindow::event(e);
}

// The screen's leave-field check when the focus goes; a refusal brings it back.
void RegisterWindow::bind_leave(VTxtEdit* edit, const std::function<bool()>& check) {
    connect(edit, &QLineEdit::editingFinished, this, [this, edit, check] {
        if (refreshing_ || leaving_ || !edit->isEnabled()) return;
        leaving_ = true;
        bool ok = true;
        run([&] { ok = check(); });
        leaving_ = false;
        if (!ok)
            QTimer::singleShot(0, edit, [edit] {
                edit->setFocus();
                edit->selectAll();
            });
    });
}

// The live figures follow every keystroke; the field being typed into keeps its text.
void RegisterWindow::bind_change(VTxtEdit* edit, const std::function<void()>& change) {
    connect(edit, &QLineEdit::textChanged, this, [this, edit, change] {
        if (refreshing_) return;
        const QString typed = edit->text();
        const int caret = edit->cursorPosition();
        run(change);
        if (edit->text() != typed) {
            edit->setText(typed);
            edit->setCursorPosition(caret);
        }
    });
}

void RegisterWindow::show_calculation() {
    const auto& run = screen_->LastCalculation();
    if (!run || run->no_assets) return;
    const auto client = reg::printed_client(component_.base->dbobj(), run->code);
    std::string text = Ostikreport::render_text(reg::calculation_sheet_report(*run, client));
    if (reg::is_income_tax_mode(run->mode))
        text += "\n" + Ostikreport::render_text(reg::block_summary_report(*run, client));
    text += "\n" + Ostikreport::render_text(reg::chart_report(*run, client));
    calculation_->setPlainText(q(text));
    shown_run_ = run;
    if (!calculation_->isVisible()) {
        calculation_->show();
        // Half of the window for the figures, the rest for the grids (and the entry frame).
        QList<int> sizes = splitter_->sizes();
        int total = 0;
        for (int v : sizes) total += v;
        if (total <= 0) total = height();
        sizes[2] = total / 2;
        sizes[0] = std::max(0, total - sizes[1] - sizes[2]);
        splitter_->setSizes(sizes);
    }
}

void RegisterWindow::build() {
    setWindowTitle(q(screen_->Caption()));
    screen_->OnAssetGroupMaster = [this, &component = component_] {
        QDialog dialog(this);
        auto* window = ui::masters::make_group_master_window(component, &dialog);
        auto* layout = new QVBoxLayout(&dialog);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(window);
        dialog.setWindowTitle(window->windowTitle());
        dialog.resize(window->size());
        dialog.exec();
    };
    auto* layout = new QVBoxLayout(this);
    auto* splitter = new QSplitter(Qt::Vertical, this);
    splitter_ = splitter;
    splitter->setChildrenCollapsible(false);
    layout->addWidget(splitter);
    splitter->addWidget(build_browse());
    entry_ = new QWidget(this);
    auto* entry_layout = new QVBoxLayout(entry_);
    entry_layout->setContentsMargins(0, 0, 0, 0);
    auto* top = new QHBoxLayout;
    // The group is picked from vsFAGM: each group with its blocks, rates and life, so
    // that two groups of one name tell apart; its last line opens the group master.
    group_ = new QComboBox(entry_);
    group_->setObjectName("txtAssetGroup");
    group_picker_ = new GridView(group_);
    group_picker_->setObjectName("vsFAGM");
    group_picker_->show_grid(screen_->vsFAGM);
    group_picker_->setSelectionBehavior(QAbstractItemView::SelectRows);
    group_picker_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    group_->setModel(group_picker_->grid_model());
    group_->setView(group_picker_);
    group_->setModelColumn(1);
    group_picker_->set_search_column(1);
    group_->setPlaceholderText("(Select)");
    connect(group_, &QComboBox::activated, this, [this](int i) {
        const int row = group_picker_->grid_model()->grid_row(i);
        // The focus stays: a letter typed picks a group, Enter or Tab moves on.
        run([&] { screen_->vsFAGM_Click(row); });
    });
    txtPart_ = entry_field(screen_->txtPart, entry_);
    txtPart_->setObjectName("txtPart");
    lblGroupInfo_ = new QLabel(entry_);
    auto* group_label = new QLabel("Asset G&roup", entry_);
    group_label->setBuddy(group_);
    top->addWidget(group_label);
    top->addWidget(group_, 1);
    top->addWidget(new QLabel("Particulars", entry_));
    top->addWidget(txtPart_, 2);
    top->addWidget(lblGroupInfo_);
    entry_layout->addLayout(top);
    auto* frames = new QHBoxLayout;
    famEditO_ = build_opening_frame();
    famEditO_->setObjectName("famEditO");
    famEditA_ = build_addition_frame();
    famEditA_->setObjectName("famEditA");
    frames->addWidget(famEditO_, 3);
    frames->addWidget(famEditA_, 3);
    frames->addWidget(build_sale_frame(), 2);
    entry_layout->addLayout(frames);
    scroll_ = new QScrollArea(this);
    scroll_->setWidget(entry_);
    scroll_->setWidgetResizable(true);
    scroll_->setFrameShape(QFrame::NoFrame);
    // The frames scroll; Update and Cancel stay in sight below them.
    entry_box_ = new QWidget(this);
    auto* box_layout = new QVBoxLayout(entry_box_);
    box_layout->setContentsMargins(0, 0, 0, 0);
    box_layout->addWidget(scroll_, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(button(
        "&Update", [this] { screen_->cmdUpdate_Click(); }, entry_box_));
    buttons->addWidget(button(
        "&Cancel", [this] { screen_->cmdCancel_Click(); }, entry_box_));
    buttons->addWidget(button(
        "Manage Asset &Group Master", [this] { screen_->cmdAssetGroup_Click(); }, entry_box_));
    box_layout->addLayout(buttons);
    splitter->addWidget(entry_box_);
    // The latest calculation as text: the sheet, the block-wise summary and the chart.
    calculation_ = new QPlainTextEdit(this);
    calculation_->setObjectName("calculation");
    calculation_->setReadOnly(true);
    calculation_->setLineWrapMode(QPlainTextEdit::NoWrap);
    calculation_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    calculation_->hide();
    splitter->addWidget(calculation_);
    splitter->setStretchFactor(0, 2);
    splitter->setStretchFactor(1, 3);
    splitter->setStretchFactor(2, 3);
    for (auto* box : findChildren<QComboBox*>()) box->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    resize(1280, 900);
    refresh();
}

QWidget* RegisterWindow::build_browse() {
    browse_ = new QWidget(this);
    auto* layout = new QVBoxLayout(browse_);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* options = new QHBoxLayout;
    cboFAGM_ = new QComboBox(browse_);
    connect(cboFAGM_, &QComboBox::activated, this,
            [this](int i) { run([&] { screen_->cboFAGM_Click(i); }); });
    auto* filter_label = new QLabel("Asset Grou&p", browse_);
    filter_label->setBuddy(cboFAGM_);
    options->addWidget(filter_label);
    options->addWidget(cboFAGM_, 1);
    auto* mod = new QGroupBox("Method of Depreciation", browse_);
    auto* mod_layout = new QHBoxLayout(mod);
    optWDV_ = new QRadioButton("WDV", mod);
    optSLM_ = new QRadioButton("SLM", mod);
    mod_layout->addWidget(optWDV_);
    mod_layout->addWidget(optSLM_);
    connect(optWDV_, &QRadioButton::clicked, this, [this] { run([&] { screen_->optMOD_Click("WDV"); }); });
    connect(optSLM_, &QRadioButton::clicked, this, [this] { run([&] { screen_->optMOD_Click("SLM"); }); });
    auto* res = new QGroupBox("Residual Value (5%) Of", browse_);
    auto* res_layout = new QHBoxLayout(res);
    optCost_ = new QRadioButton("Cost", res);
    optCA_ = new QRadioButton("Carrying Amount", res);
    res_layout->addWidget(optCost_);
    res_layout->addWidget(optCA_);
    connect(optCost_, &QRadioButton::clicked, this,
            [this] { run([&] { screen_->optResValOf_Click("COST"); }); });
    connect(optCA_, &QRadioButton::clicked, this, [this] { run([&] { screen_->optResValOf_Click("CA"); }); });
    cboRndRemLife_ = new QComboBox(browse_);
    connect(cboRndRemLife_, &QComboBox::activated, this,
            [this](int i) { run([&] { screen_->cboRndRemLife_Click(i); }); });
    cboBADep_ = new QComboBox(browse_);
    connect(cboBADep_, &QComboBox::activated, this,
            [this](int i) { run([&] { screen_->cboBADep_Click(i); }); });
    options->addWidget(mod);
    options->addWidget(res);
    auto* rounding = new QFormLayout;
    rounding->addRow("Rounding of Remaining Life", cboRndRemLife_);
    rounding->addRow("Books", cboBADep_);
    options->addLayout(rounding);
    layout->addLayout(options);

    // The options that ask nothing before they change.
    auto* others = new QHBoxLayout;
    const auto tick = [&](const CheckBox& state, QCheckBox*& box, void (S::*click)()) {
        box = new QCheckBox(q(state.Caption), browse_);
        others->addWidget(box);
        connect(box, &QCheckBox::clicked, this, [this, click] { run([&] { (screen_.get()->*click)(); }); });
    };
    tick(screen_->chkFASchBooks, chkFASchBooks_, &S::chkFASchBooks_Click);
    tick(screen_->chkRndFA, chkRndFA_, &S::chkRndFA_Click);
    tick(screen_->chkRndIT, chkRndIT_, &S::chkRndIT_Click);
    tick(screen_->chkRemLife0, chkRemLife0_, &S::chkRemLife0_Click);
    others->addStretch(1);
    layout->addLayout(others);

    const auto side = [&](const QString& title, Grid& g, int* row, GridView*& view,
                          const std::function<void()>& add, const std::function<void()>& edit,
                          const std::function<void()>& del, const std::function<void()>& del_all) {
        auto* line = new QHBoxLayout;
        line->addWidget(heading(title, browse_));
        line->addStretch(1);
        const bool opening = &g == &screen_->vsO;
        // One Alt key per button of the window: the opening side's buttons have them;
        // the additions' are reached by Tab (or a double click on the row).
        const std::pair<QString, std::pair<std::function<void()>, const CommandButton*>> buttons[] = {
            {opening ? "&Add" : "Add", {add, opening ? &screen_->cmdAddO : &screen_->cmdAddA}},
            {opening ? "&Edit" : "Edit", {edit, opening ? &screen_->cmdEditO : &screen_->cmdEditA}},
            {opening ? "&Delete" : "Delete", {del, opening ? &screen_->cmdDelO : &screen_->cmdDelA}},
            {opening ? "Delete A&ll" : "Delete All",
             {del_all, opening ? &screen_->cmdDelAllO : &screen_->cmdDelAllA}}};
        for (const auto& [caption, what] : buttons) {
            auto* b = button(caption, what.first, browse_);
            browse_buttons_.push_back({b, what.second});
            line->addWidget(b);
        }
        layout->addLayout(line);
        view = grid_view(g, row, browse_);
        // Three rows stay in sight while an entry frame is open.
        view->setMinimumHeight(view->horizontalHeader()->sizeHint().height() +
                               3 * view->verticalHeader()->defaultSectionSize() +
                               view->horizontalScrollBar()->sizeHint().height() + 2 * view->frameWidth());
        view->setObjectName(opening ? "vsO" : "vsA");
        connect(view, &QAbstractItemView::doubleClicked, this, [this, edit] { run(edit); });
        layout->addWidget(view, 1);
    };
    side(
        "Opening Assets (As on 01/04/" + QString::number(screen_->Year() - 1) + ")", screen_->vsO,
        &screen_->vsO_Row, vsO_, [this] { screen_->cmdAddO_Click(); }, [this] { screen_->cmdEditO_Click(); },
        [this] { screen_->cmdDelO_Click(); }, [this] { screen_->cmdDelAllO_Click(); });
    side(
        "Additions during the Year", screen_->vsA, &screen_->vsA_Row, vsA_,
        [this] { screen_->cmdAddA_Click(); }, [this] { screen_->cmdEditA_Click(); },
        [this] { screen_->cmdDelA_Click(); }, [this] { screen_->cmdDelAllA_Click(); });

    auto* buttons = new QHBoxLayout;
    // Depreciation as per books or as per the Income-tax Act: the calculate button
    // works by this display mode.
    auto* dep_mode = new QComboBox(browse_);
    dep_mode->addItem("As per Books");
    dep_mode->addItem("As per Income-Tax Act");
    dep_mode->addItem("Tax Audit (Additions and Deductions)");
    dep_mode->setCurrentIndex(screen_->DepMode == reg::Mode::DEP_3CD_IT   ? 2
                              : reg::is_income_tax_mode(screen_->DepMode) ? 1
                                                                          : 0);
    connect(dep_mode, &QComboBox::activated, this, [this](int i) {
        const reg::Mode mode = i == 2   ? reg::Mode::DEP_3CD_IT
                               : i == 1 ? reg::Mode::DEP_IT
                                        : reg::Mode::DEP_FA;
        run([&] { screen_->cboDepMode_Click(mode); });
    });
    buttons->addWidget(dep_mode);
    auto* calc = button(
        "Calculate Depreciatio&n", [this] { screen_->cmdDeprCalc_Click(); }, browse_);
    connect(calc, &QPushButton::clicked, this, &RegisterWindow::show_calculation);
    browse_buttons_.push_back({calc, &screen_->cmdDeprCalc});
    buttons->addWidget(calc);
    auto* transfer = button(
        "&Transfer to Trial Balance", [this] { screen_->cmdTransToTB_Click(); }, browse_);
    browse_buttons_.push_back({transfer, &screen_->cmdTransToTB});
    buttons->addWidget(transfer);
    auto* gains = button(
        "Transfer to Capital Gain&s", [this] { screen_->TransferToCapitalGains(); }, browse_);
    browse_buttons_.push_back({gains, &screen_->cmdTransToTB});
    buttons->addWidget(gains);
    auto* edit_fa = button(
        "Edit Depreciation (&FA)", [this] { edit_manual_depreciation(); }, browse_);
    browse_buttons_.push_back({edit_fa, &screen_->cmdEditFA});
    buttons->addWidget(edit_fa);
    buttons->addStretch(1);
    layout->addLayout(buttons);
    // The second line of commands: the spreadsheets, the master, the old chart, Back.
    buttons = new QHBoxLayout;
    // The spreadsheets' work is handed to the screen by the host.
    auto* export_xls = button(
        "E&xport to Excel", [this] { screen_->cmdExportXls_Click(); }, browse_);
    browse_buttons_.push_back({export_xls, &screen_->cmdExportXls});
    buttons->addWidget(export_xls);
    auto* import_xls = button(
        "&Import from Excel", [this] { screen_->cmdImportXls_Click(); }, browse_);
    browse_buttons_.push_back({import_xls, &screen_->cmdImportXls});
    buttons->addWidget(import_xls);
    auto* masters = button(
        "Asset Group &Master", [this] { screen_->cmdAssetGroupMas_Click(); }, browse_);
    browse_buttons_.push_back({masters, &screen_->cmdAssetGroupMas});
    buttons->addWidget(masters);
    auto* old = button(
        "&Old Depreciation Chart", [this] { screen_->cmdOldDepChart_Click(); }, browse_);
    browse_buttons_.push_back({old, &screen_->cmdOldDepChart});
    buttons->addWidget(old);
    buttons->addStretch(1);
    auto* back = button(
        "&Back", [this] { screen_->cmdBack_Click(); }, browse_);
    buttons->addWidget(back);
    layout->addLayout(buttons);
    return browse_;
}

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
    vsESA_->setMinimumHeight(90);
    layout->addWidget(vsESA_, r++, 0, 1, 3);
    auto* esa = new QHBoxLayout;
    const char* hints[] = {"Particulars", "WDV", "Date", "Amount", "Excess", "Adjust"};
    for (int c = 0; c < 6; ++c) {
        esaInput_[c] = new QLineEdit(frame);
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
    connect(chkTotESA_, &QCheckBox::clicked, this, [this] { run([&] { screen_->chkTotESA_Click(); }); });
    txtTotESA_ = entry_field(screen_->txtTotESA, frame);
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
    connect(cboMODa_, &QComboBox::activated, this,
            [this](int i) { run([&] { screen_->cboMODa_Click(i); }); });
    layout->addWidget(new QLabel("Method of Depreciation", frame), r, 0);
    layout->addWidget(cboMODa_, r++, 1);
    cboRndAddRtAuto_ = new QComboBox(frame);
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
        bind_leave(txtfieldsD_[i], [this, i] { return screen_->txtfieldsD_Validate(i); });
        form->addRow(q(screen_->lblfieldsD[i]), txtfieldsD_[i]);
    }
    chkPartDed_ = new QCheckBox(q(screen_->chkPartDed.Caption), sale);
    connect(chkPartDed_, &QCheckBox::clicked, this, [this] { run([&] { screen_->chkPartDed_Click(); }); });
    form->addRow(chkPartDed_);
    outer->addWidget(sale);
    auto* shifts = new QGroupBox("Extra Shift", box);
    auto* shift_layout = new QVBoxLayout(shifts);
    lblNESD_ = new QLabel(shifts);
    shift_layout->addWidget(lblNESD_);
    vsS_ = new GridView(shifts);
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
    connect(chkAutoCalcDeprCL_, &QCheckBox::clicked, this,
            [this] { run([&] { screen_->chkAutoCalcDeprCL_Click(); }); });
    txtAutoCalcDeprCL_ = entry_field(screen_->txtAutoCalcDeprCL, depr);
    lblDaysDeprCL_ = new QLabel(depr);
    depr_layout->addRow(chkAutoCalcDeprCL_, txtAutoCalcDeprCL_);
    depr_layout->addRow("Days", lblDaysDeprCL_);
    outer->addWidget(depr);
    outer->addStretch(1);
    return box;
}

void RegisterWindow::take_input() {
    auto& sc = *screen_;
    // A field the person cannot type into keeps the screen's text.
    const auto take = [](const VTxtEdit* e, vTXT& f) {
        if (e && e->isEnabled()) take_field(e, f);
    };
    take(txtPart_, sc.txtPart);
    for (int i = 0; i < S::O_Count; ++i) take(txtfieldsO_[i], sc.txtfieldsO[i]);
    for (int i = 0; i < S::A_Count; ++i) take(txtfieldsA_[i], sc.txtfieldsA[i]);
    for (int i = 0; i < S::D_Count; ++i) take(txtfieldsD_[i], sc.txtfieldsD[i]);
    take(txtCalcCA_, sc.txtCalcCA);
    take(txtTotESA_, sc.txtTotESA);
    take(txtAutoCalcDeprCL_, sc.txtAutoCalcDeprCL);
}

void RegisterWindow::refresh() {
    refreshing_ = true;
    auto& sc = *screen_;
    if (shown_run_ && sc.LastCalculation() != shown_run_) {
        shown_run_.reset();
        calculation_->setPlainText(
            "The register has changed since this calculation. Press Calculate Depreciation for figures "
            "that agree with it.");
    }
    const bool entering = sc.Entering();
    const auto show = &ScreenWindow::show_field;
    setWindowTitle(q(sc.Caption()));
    browse_->setEnabled(!entering);
    for (const auto& [b, state] : browse_buttons_) b->setEnabled(state->Enabled);
    if (entering && !entry_box_->isVisible()) {
        // The entry frame takes the larger part of the window while it is open.
        entry_box_->setVisible(true);
        const int h = std::max(splitter_->height(), 600);
        splitter_->setSizes({h * 2 / 5, h * 3 / 5});
    } else if (!entering) {
        entry_box_->setVisible(false);
    }
    famEditO_->setVisible(sc.famEditO_Visible);
    famEditA_->setVisible(sc.famEditA_Visible);
    show_combo(cboFAGM_, sc.cboFAGM);
    show_combo(cboRndRemLife_, sc.cboRndRemLife);
    show_combo(cboBADep_, sc.cboBADep);
    optWDV_->setChecked(sc.optWDV.Value);
    optSLM_->setChecked(sc.optSLM.Value);
    optCost_->setChecked(sc.optCost.Value);
    optCA_->setChecked(sc.optCA.Value);
    chkFASchBooks_->setChecked(sc.chkFASchBooks.Value);
    chkRndFA_->setChecked(sc.chkRndFA.Value);
    chkRndIT_->setChecked(sc.chkRndIT.Value);
    chkRemLife0_->setChecked(sc.chkRemLife0.Value);

    {
        // The picker's popup shows every column whole.
        int wide = 0;
        for (int c = 0; c < sc.vsFAGM.cols(); ++c)
            if (!group_picker_->isColumnHidden(c)) wide += group_picker_->columnWidth(c);
        group_picker_->setMinimumWidth(wide + group_picker_->verticalScrollBar()->sizeHint().width() + 4);
        int shown = -1;
        for (int r = sc.vsFAGM.fixed_rows(); r < sc.vsFAGM.rows(); ++r)
            if (sc.txtAssetGroup.Id && sc.vsFAGM.text_matrix(r, 0) == std::to_string(sc.txtAssetGroup.Id))
                shown = r - sc.vsFAGM.fixed_rows();
        group_->setCurrentIndex(shown);
    }
    lblGroupInfo_->setText(q(sc.lblNESD));
    show(txtPart_, sc.txtPart, entering);
    for (int i = 0; i < S::O_Count; ++i) {
        lblfieldsO_[i]->setText(q(sc.lblfieldsO[i]));
        const bool ticked = chkfieldsO_[i] && sc.chkfieldsO[i].Value && i != S::O_AddlDepOn;
        bool enabled = !ticked;
        if (i == S::O_AddlDepOn) enabled = sc.chkfieldsO[i].Value;
        show(txtfieldsO_[i], sc.txtfieldsO[i], enabled);
        if (chkfieldsO_[i]) {
            chkfieldsO_[i]->setText(q(sc.chkfieldsO[i].Caption));
            chkfieldsO_[i]->setChecked(sc.chkfieldsO[i].Value);
        }
    }
    for (int i = 0; i < S::A_Count; ++i) {
        lblfieldsA_[i]->setText(q(sc.lblfieldsA[i]));
        const bool ticked = chkfieldsA_[i] && sc.chkfieldsA[i].Value;
        show(txtfieldsA_[i], sc.txtfieldsA[i], !ticked && !(i == S::A_AddlDepRT));
        if (chkfieldsA_[i]) {
            chkfieldsA_[i]->setText(q(sc.chkfieldsA[i].Caption));
            chkfieldsA_[i]->setChecked(sc.chkfieldsA[i].Value);
        }
    }
    for (int i = 0; i < S::D_Count; ++i) show(txtfieldsD_[i], sc.txtfieldsD[i], true);
    show_combo(cboCalcCA_, sc.cboCalcCA);
    show(txtCalcCA_, sc.txtCalcCA, !sc.cboCalcCA.Id().empty());
    show_combo(cboMODo_, sc.cboMODo);
    show_combo(cboResValOfO_, sc.cboResValOfO);
    show_combo(cboMODa_, sc.cboMODa);
    show_combo(cboRndAddRtAuto_, sc.cboRndAddRtAuto);
    for (int c = 0; c < 3; ++c) optsWdvIT_[c]->setChecked(sc.optsWdvIT == c);
    lblRemLifeO_->setText(q(sc.lblRemLifeO) +
                          (sc.txtRemLifeO.empty() ? "" : "  [" + q(sc.txtRemLifeO) + "]"));
    lblRemLifeA_->setText(q(sc.lblRemLifeA));
    lblBlockO_->setText(q(sc.lblBlockO));
    lblBlockA_->setText(q(sc.lblBlockA));
    lblMiscAdjA_->setText(q(sc.lblMiscAdjA));
    lblNetAmtA_->setText(q(sc.lblNetAmtA));
    lblNESD_->setText(q(sc.lblNESD));
    lblShiftDays_->setText(q(sc.lblShiftDays));
    lblDaysDeprCL_->setText(q(sc.lblDaysDeprCL));
    chkTotESA_->setChecked(sc.chkTotESA.Value);
    show(txtTotESA_, sc.txtTotESA, sc.chkTotESA.Value);
    vsESA_->setEnabled(!sc.chkTotESA.Value);
    chkAutoCalcDeprCL_->setChecked(sc.chkAutoCalcDeprCL.Value);
    chkPartDed_->setChecked(sc.chkPartDed.Value);
    show(txtAutoCalcDeprCL_, sc.txtAutoCalcDeprCL, !sc.chkAutoCalcDeprCL.Value);

    // A refused update sends the person back to the field it names.
    if (entering && sc.FocusIndex >= 0) {
        QWidget* target = nullptr;
        switch (sc.FocusSide) {
            case 'G':
                target = group_;
                break;
            case 'P':
                target = txtPart_;
                break;
            case 'O':
                target = txtfieldsO_[sc.FocusIndex];
                break;
            case 'A':
                target = txtfieldsA_[sc.FocusIndex];
                break;
            case 'D':
                target = txtfieldsD_[sc.FocusIndex];
                break;
            case 'C':
                target = cboCalcCA_;
                break;
            default:
                break;
        }
        if (target && target->isVisible()) target->setFocus();
        sc.FocusIndex = -1;
    }
    refreshing_ = false;
}

std::shared_ptr<reg::frmNewFATR> make_register_screen(frame::Component& component, QWidget* host) {
    return std::make_shared<DesktopRegisterScreen>(component, host);
}

QWidget* make_register_window(frame::Component& component, QWidget* parent) {
    return new RegisterWindow(component, parent);
}

QWidget* make_register_window(std::shared_ptr<frame::Screen> screen, frame::Component& component,
                              QWidget* parent) {
    auto reg = std::dynamic_pointer_cast<reg::frmNewFATR>(screen);
    if (!reg) return nullptr;
    return new RegisterWindow(std::move(reg), component, parent);
}

// vsEditFA in a dialog of its own: a row's amount is typed on a double click; Save
// writes the grid, Back leaves it.
void RegisterWindow::edit_manual_depreciation() {
    run([&] { screen_->cmdEditFA_Click(); });
    if (!screen_->famEditFA_Visible) return;
    QDialog dialog(this);
    dialog.setWindowTitle("Edit Depreciation (FA)");
    auto* layout = new QVBoxLayout(&dialog);
    auto* view = new GridView(&dialog);
    view->setObjectName("vsEditFA");
    view->show_grid(screen_->vsEditFA);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->setMinimumSize(520, 320);
    layout->addWidget(view);
    connect(view, &QAbstractItemView::doubleClicked, &dialog, [this, view](const QModelIndex& index) {
        const int grid_row = view->grid_model()->grid_row(index.row());
        const auto typed = ui().input_box("Depreciation", screen_->vsEditFA.text_matrix(grid_row, 1),
                                          screen_->vsEditFA.text_matrix(grid_row, 2));
        if (typed) run([&] { screen_->vsEditFA_ValidateEdit(grid_row, *typed); });
    });
    auto* buttons = new QHBoxLayout;
    auto* save = new QPushButton("&Save", &dialog);
    auto* back = new QPushButton("&Back", &dialog);
    buttons->addStretch(1);
    buttons->addWidget(save);
    buttons->addWidget(back);
    layout->addLayout(buttons);
    connect(save, &QPushButton::clicked, &dialog, [&] {
        run([&] { screen_->cmdSaveEditFA_Click(); });
        dialog.accept();
    });
    connect(back, &QPushButton::clicked, &dialog, [&] {
        run([&] { screen_->cmdBackEditFA_Click(); });
        dialog.reject();
    });
    dialog.exec();
    if (screen_->famEditFA_Visible) run([&] { screen_->cmdBackEditFA_Click(); });
}

// The year's income-tax chart edited by hand, in a window of its own.
void RegisterWindow::open_chart_editor() {
    auto* editor = new ChartEditorWindow(component_, this);
    editor->setWindowFlag(Qt::Window);
    editor->setAttribute(Qt::WA_DeleteOnClose);
    if (editor->load())
        editor->show();
    else
        editor->deleteLater();
}

}  // namespace brenlow::ui

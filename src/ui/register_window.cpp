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
    // Tab stops at the fields inside, never at the area around them.
    scroll_->setFocusPolicy(Qt::NoFocus);
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
        "Calculate Depreciatio&n",
        [this] {
            // The run is told in the progress box from its start to its end.
            ui().progress("Calculating Depreciation ...", 0.0);
            screen_->cmdDeprCalc_Click();
            ui().progress("Calculating Depreciation ...", 1.0);
            ui().progress_done();
        },
        browse_);
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
    // The books amount of an opening entry is headed by how the entry was made: at
    // cost (its residual value follows cost) or at its written down value.
    const bool at_cost = sc.cboResValOfO.Id() == "COST" || (sc.cboResValOfO.Id().empty() && sc.optCost.Value);
    lblfieldsO_[S::O_CostWdv]->setText(at_cost ? "Cost" : "Written Down Value");
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
            case 'X':
                target = txtAutoCalcDeprCL_;
                break;
            default:
                break;
        }
        if (target && target->isVisible()) {
            scroll_->ensureWidgetVisible(target);
            target->setFocus();
        }
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

#include "ui/capital_window.h"

#include <QAbstractItemDelegate>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QShortcut>
#include <QSplitter>
#include <QVBoxLayout>

#include "ui/grid_table_model.h"

namespace brenlow::ui {
namespace {

using S = capital::capital;

QString q(const std::string& s) {
    return QString::fromStdString(s);
}

// The Ui is made before the screen that holds on to it.
struct OwnUi {
    explicit OwnUi(QWidget* host) : own_ui(host) {}
    QtUi own_ui;
};

class DesktopCapitalScreen : private OwnUi, public S {
public:
    DesktopCapitalScreen(frame::Component& component, QWidget* host) : OwnUi(host), S(component, own_ui) {}
    QtUi& window_ui() { return own_ui; }
};

void editable(GridView* view) {
    view->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                          QAbstractItemView::AnyKeyPressed);
    view->setSelectionBehavior(QAbstractItemView::SelectItems);
}

}  // namespace

CapitalWindow::CapitalWindow(std::shared_ptr<S> screen, QWidget* parent)
    : ScreenWindow(parent), screen_(std::move(screen)) {
    if (auto* own = dynamic_cast<DesktopCapitalScreen*>(screen_.get())) own->window_ui().set_window(this);
    // The one screen is reused: each window reads the open client's year afresh.
    screen_->Form_Load();
    auto& s = *screen_;
    setWindowTitle(q(s.Caption()));

    title_ = new QLabel(this);
    QFont big = title_->font();
    big.setBold(true);
    big.setPointSizeF(big.pointSizeF() * 1.3);
    title_->setFont(big);
    txtNetProfit_ = entry_field(s.txtNetProfit);
    chkautocalcnp_ = new QCheckBox(q(s.chkautocalcnp.Caption), this);
    connect(chkautocalcnp_, &QCheckBox::clicked, this,
            [this] { run([this] { screen_->chkautocalcnp_Click(); }); });

    chkShareCurrent_ = new QCheckBox(q(s.chkShareCurrent.Caption), this);
    connect(chkShareCurrent_, &QCheckBox::clicked, this,
            [this] { run([this] { screen_->chkShareCurrent_Click(); }); });

    // The screen writes the firm's line under the partners itself.
    vsPL_ = grid_view(s.vsPL, [this](int row) { screen_->vsPL_RowColChange(row); });
    vsPL_->setObjectName("vsPL");
    vsfC_ = grid_view(s.vsfC, [this](int row) { screen_->vsfC_RowColChange(row); });
    vsfC_->show_totals(true);
    vsfC_->setObjectName("vsfC");
    editable(vsfC_);
    on_edit(vsfC_, [this](int row, int col) { screen_->vsfC_AfterEdit(row, col); });
    vsLM_ = grid_view(s.vsLM, [](int) {});
    vsLM_->setObjectName("vsLM");
    connect(vsLM_, &QAbstractItemView::doubleClicked, this, [this](const QModelIndex& index) {
        const int row = vsLM_->grid_model()->grid_row(index.row());
        run([this, row] { screen_->vsLM_DblClick(row); });
    });

    vsIR_ = grid_view(s.vsIR, [](int) {});
    vsIR_->setObjectName("vsIR");
    editable(vsIR_);
    on_edit(vsIR_, [this](int row, int col) { screen_->vsIR_AfterEdit(row, col); });
    lblRemuneration_ = new QLabel(this);
    lblRemuneration_->setObjectName("lblRemuneration");
    lblRemuneration_->setWordWrap(true);

    fraRatio_ = new QGroupBox("Profit Sharing Ratio", this);
    vsfR_ = grid_view(
        s.vsfR, [this](int row) { screen_->vsfR_RowColChange(row); }, fraRatio_);
    vsfR_->setObjectName("vsfR");
    editable(vsfR_);
    on_edit(vsfR_, [this](int row, int col) { screen_->vsfR_AfterEdit(row, col); });
    lblTotal_ = new QLabel(fraRatio_);
    auto* ratio_buttons = new QHBoxLayout;
    for (const auto& [caption, event, state] :
         std::vector<std::tuple<QString, std::function<void()>, const CommandButton*>>{
             {"&Add Partner", [this] { screen_->cmdAddP_Click(); }, &s.cmdAddP},
             {"De&lete Partner", [this] { screen_->cmdDelP_Click(); }, &s.cmdDelP},
             {"Save && &Back", [this] { screen_->cmdbackP_Click(); }, &s.cmdbackP}}) {
        auto* b = button(caption, event, fraRatio_);
        ratio_buttons->addWidget(b);
        buttons_.emplace_back(b, state);
    }
    auto* ratio_layout = new QVBoxLayout(fraRatio_);
    ratio_layout->addWidget(vsfR_, 1);
    ratio_layout->addWidget(lblTotal_);
    ratio_layout->addLayout(ratio_buttons);

    auto* partner_buttons = new QHBoxLayout;
    for (const auto& [caption, event, state] :
         std::vector<std::tuple<QString, std::function<void()>, const CommandButton*>>{
             {"Profit Sharing &Ratio", [this] { screen_->cmdProfitDet_Click(); }, &s.cmdProfitDet},
             {"Interest && Re&muneration", [this] { screen_->cmdIntRem_Click(); }, &s.cmdIntRem},
             {"&Distribute Profit", [this] { screen_->cmdShare_Click(); }, &s.cmdShare}}) {
        auto* b = button(caption, event);
        partner_buttons->addWidget(b);
        buttons_.emplace_back(b, state);
    }
    auto* line_buttons = new QHBoxLayout;
    for (const auto& [caption, event, state] :
         std::vector<std::tuple<QString, std::function<void()>, const CommandButton*>>{
             {"Add &Line", [this] { screen_->cmdaddr_Click(); }, &s.cmdaddr},
             {"Delete L&ine", [this] { screen_->cmddelr_Click(); }, &s.cmddelr},
             {"&Save", [this] { screen_->cmdsave_Click(); }, &s.cmdsave},
             {"Delete &Capital A/c", [this] { screen_->cmddelcap_Click(); }, &s.cmddelcap},
             {"&Print", [this] { screen_->cmdprint_Click(); }, &s.cmdprint},
             {"E&xit", [this] { screen_->cmdback_Click(); }, &s.cmdback}}) {
        auto* b = button(caption, event);
        line_buttons->addWidget(b);
        buttons_.emplace_back(b, state);
    }

    auto* top = new QHBoxLayout;
    top->addWidget(title_, 1);
    top->addWidget(new QLabel(q(s.lblNetProfit.Caption), this));
    top->addWidget(txtNetProfit_);
    top->addWidget(chkautocalcnp_);
    top->addWidget(chkShareCurrent_);

    auto* left = new QWidget(this);
    auto* left_layout = new QVBoxLayout(left);
    left_layout->setContentsMargins(0, 0, 0, 0);
    left_layout->addWidget(new QLabel("<b>Partners</b>", left));
    left_layout->addWidget(vsPL_, 1);
    left_layout->addWidget(new QLabel("<b>Interest and Remuneration u/s 40(b)</b>", left));
    left_layout->addWidget(vsIR_, 1);
    left_layout->addWidget(lblRemuneration_);
    left_layout->addLayout(partner_buttons);
    left_layout->addWidget(fraRatio_, 1);
    auto* middle = new QWidget(this);
    auto* middle_layout = new QVBoxLayout(middle);
    middle_layout->setContentsMargins(0, 0, 0, 0);
    middle_layout->addWidget(new QLabel("<b>Capital A/c and Current A/c</b>", middle));
    middle_layout->addWidget(vsfC_, 1);
    auto* right = new QWidget(this);
    auto* right_layout = new QVBoxLayout(right);
    right_layout->setContentsMargins(0, 0, 0, 0);
    right_layout->addWidget(new QLabel("<b>Particulars</b>", right));
    right_layout->addWidget(vsLM_, 1);
    auto* split = new QSplitter(this);
    split->addWidget(left);
    split->addWidget(middle);
    split->addWidget(right);
    split->setStretchFactor(0, 7);
    split->setStretchFactor(1, 6);
    split->setStretchFactor(2, 2);
    split->setSizes({800, 620, 220});

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(split, 1);
    layout->addLayout(line_buttons);

    // The shortcut of the two "[...]" entries: in the ratio grid a partner entered
    // by hand, anywhere else a new particular.
    for (const char* keys : {"Ctrl+Home", "Ctrl+Up"}) {
        auto* shortcut = new QShortcut(QKeySequence(keys), this);
        connect(shortcut, &QShortcut::activated, this, [this] {
            if (vsfR_->hasFocus() && screen_->fraRatio_Visible) {
                const int row = screen_->vsfR_Row();
                if (row < screen_->vsfR.fixed_rows()) return;
                run([this, row] {
                    screen_->vsfR.set_text_matrix(row, S::kRPartner, S::kOtherEntryId);
                    screen_->vsfR_AfterEdit(row, S::kRPartner);
                });
            } else {
                run([this] { screen_->vsLM_New(); });
            }
        });
    }
    resize(1680, 760);
    refresh();
}

CapitalWindow::~CapitalWindow() {
    drop_grid_views();
}

void CapitalWindow::on_edit(GridView* view, const std::function<void(int, int)>& after_edit) {
    connect(view->itemDelegate(), &QAbstractItemDelegate::closeEditor, this, [this, view, after_edit] {
        const QModelIndex index = view->currentIndex();
        if (!index.isValid()) return;
        const int row = view->grid_model()->grid_row(index.row());
        const int col = index.column();
        run([&] { after_edit(row, col); });
    });
}

void CapitalWindow::take_input() {
    take_field(txtNetProfit_, screen_->txtNetProfit);
    screen_->chkautocalcnp.Value = chkautocalcnp_->isChecked();
    screen_->chkShareCurrent.Value = chkShareCurrent_->isChecked();
}

void CapitalWindow::refresh() {
    refreshing_ = true;
    auto& s = *screen_;
    setWindowTitle(q(s.Caption()));
    title_->setText(q(s.Caption()));
    show_field(txtNetProfit_, s.txtNetProfit, !s.chkautocalcnp.Value);
    chkautocalcnp_->setChecked(s.chkautocalcnp.Value);
    chkShareCurrent_->setChecked(s.chkShareCurrent.Value);
    lblRemuneration_->setText(q(s.lblRemuneration.Caption));
    lblTotal_->setText(q(s.lblTotal.Caption));
    fraRatio_->setVisible(s.fraRatio_Visible);
    for (const auto& [b, state] : buttons_) b->setEnabled(state->Enabled);
    show_row(vsPL_, s.vsPL_Row());
    show_row(vsfC_, s.vsfC_Row());
    if (s.fraRatio_Visible) show_row(vsfR_, s.vsfR_Row());
    refreshing_ = false;
}

std::shared_ptr<S> make_capital_screen(frame::Component& component, QWidget* host) {
    return std::make_shared<DesktopCapitalScreen>(component, host);
}

QWidget* make_capital_window(frame::Component& component, QWidget* parent) {
    return new CapitalWindow(make_capital_screen(component, parent), parent);
}

QWidget* make_capital_window(std::shared_ptr<frame::Screen> screen, QWidget* parent) {
    auto capital = std::dynamic_pointer_cast<S>(screen);
    if (!capital) return nullptr;
    return new CapitalWindow(std::move(capital), parent);
}

}  // namespace brenlow::ui

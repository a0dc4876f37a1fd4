#pragma once
// The suite's desktop host, as far as this component needs one: it opens the
// database (the embedded default or a server, remembering the last one), lets the
// user pick or create a client and financial year, and opens the component's
// screens through Forms, each in its own window.

#include <QMainWindow>
#include <QPointer>
#include <memory>
#include <optional>

#include "frame/forms.h"
#include "suite/base_services.h"
#include "ui/qt_ui.h"
#include "ui/report_preview.h"

class QLabel;
class QAction;

namespace brenlow::tarrow {
class ClientPanel;
struct ClientChoice;
}  // namespace brenlow::tarrow

namespace brenlow::tarrow {

class HostWindow : public QMainWindow {
    Q_OBJECT
public:
    explicit HostWindow(QWidget* parent = nullptr);
    ~HostWindow() override;

    // Opens a database; false (and a message) when it cannot be opened.
    bool open_database(const QString& url);
    // Chooses the client's year, creating it when asked to.
    bool open_client_year(const QString& code, int year, bool create, const QString& name = {},
                          std::optional<int> status = std::nullopt,
                          std::optional<AssesseeKind> kind = std::nullopt);

    // What the window does when it starts without a client named: with no client in
    // the database it offers to create one; with clients it opens the one used last
    // (when the database still has it, and `remembered` allows) or shows the list.
    void first_start(bool remembered = true);
    // The panel that lists the clients and makes new ones; shown while no client is open.
    ClientPanel* client_panel() const { return client_panel_; }

    suite::BaseServices* base() const;
    frame::Forms* forms() const { return forms_.get(); }
    QString database_url() const { return url_; }
    // Opens a screen by its menu name: register, groups, company-blocks, income-tax-blocks,
    // particulars, schedules, capital, capital-ledger. Returns its window, or nothing.
    QWidget* open_by_name(const QString& name);

public slots:
    void choose_client_year();
    // The open client's status and kind of assessee, the kind changeable.
    void edit_client_details();
    void connect_to_server();
    void use_embedded_database();
    void open_register();
    void open_schedules();
    void open_capital();
    void open_capital_ledger_master();
    void open_block_master(int kind);
    void open_group_master();
    void open_particulars_master();
    void open_fixed_schedule();
    void merge_assets();
    // The notes to the accounts, shown in the print preview.
    void open_ppe_note();
    void open_deferred_tax();
    void about();

private:
    // The Export menu of the income-tax chart's preview: the return's schedules and
    // clause 18 of the tax audit report of the year open (return_exports.cpp).
    std::vector<ui::PreviewExport> return_exports(const Ostikreport::ReportDocument& doc);
    void build_menus();
    void refresh();
    bool need_client_year();
    // Shows a screen's window, or says that the screen is not available yet.
    void show_screen_window(QWidget* window, const QString& what);

    QtUi ui_;
    QString url_;
    std::unique_ptr<frame::Forms> forms_;
    QLabel* summary_ = nullptr;
    ClientPanel* client_panel_ = nullptr;
    void take_choice(const ClientChoice& choice);
    QList<QAction*> needs_year_;
    QPointer<QWidget> last_window_;
};

}  // namespace brenlow::tarrow

#pragma once
// Pick one of the clients' financial years, or create a new one: as a panel the main
// window shows while no client is open, and as a dialog for Client -> Select.

#include <QDialog>
#include <QWidget>
#include <optional>
#include <vector>

#include "masters/client_form.h"
#include "store/client_store.h"

class QTableWidget;
class QLineEdit;
class QSpinBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QPushButton;

namespace brenlow::tarrow {

struct ClientChoice {
    QString code;
    int year = 0;
    bool create = false;
    QString name;
    int status = 1;
    // The kind of assessee picked for a new client; nullopt while it follows the status.
    std::optional<AssesseeKind> kind;
};

// The client's status by name: 1 an individual or proprietor, 2 a partnership firm,
// 3 and 4 companies; "Status N" for anything else.
QString status_name(int status);

class ClientPanel : public QWidget {
    Q_OBJECT
public:
    ClientPanel(const std::vector<store::ClientYear>& years, int default_year, QWidget* parent = nullptr);
    // The list read again (after a client was made elsewhere).
    void set_years(const std::vector<store::ClientYear>& years);
    // With no client yet, only the form that makes one is shown, the code field first.
    bool offers_creation_only() const { return years_.empty(); }

    QTableWidget* list() const { return list_; }
    QLineEdit* code_field() const { return code_; }
    QLineEdit* name_field() const { return name_; }
    QSpinBox* year_field() const { return year_; }
    QComboBox* status_field() const { return status_; }
    QComboBox* kind_field() const { return kind_; }
    QPushButton* create_button() const { return create_; }

signals:
    void chosen(const brenlow::tarrow::ClientChoice& choice);

private slots:
    void open_selected();
    void create_new();

private:
    void fill_list();
    void show_form();

    std::vector<store::ClientYear> years_;
    QGroupBox* existing_ = nullptr;
    QGroupBox* fresh_ = nullptr;
    QTableWidget* list_ = nullptr;
    QPushButton* open_ = nullptr;
    QLineEdit* code_ = nullptr;
    QLineEdit* name_ = nullptr;
    QSpinBox* year_ = nullptr;
    QComboBox* status_ = nullptr;
    QComboBox* kind_ = nullptr;
    QLabel* kind_from_ = nullptr;
    QPushButton* create_ = nullptr;
    masters::ClientForm form_;
};

// The open client's details: its status and the kind of assessee, which the person
// may change (the kind is kept for all the client's years).
class ClientKindDialog : public QDialog {
    Q_OBJECT
public:
    ClientKindDialog(store::Database& db, const store::ClientYear& client, QWidget* parent = nullptr);
    QComboBox* kind_field() const { return kind_; }
    QLabel* kind_from() const { return kind_from_; }
    QPushButton* save_button() const { return save_; }

private:
    void show_form();

    store::Database& db_;
    std::string code_;
    masters::ClientForm form_;
    QComboBox* kind_ = nullptr;
    QLabel* kind_from_ = nullptr;
    QPushButton* save_ = nullptr;
};

class ClientDialog : public QDialog {
    Q_OBJECT
public:
    ClientDialog(const std::vector<store::ClientYear>& years, int default_year, QWidget* parent = nullptr);
    std::optional<ClientChoice> choice() const { return choice_; }
    ClientPanel* panel() const { return panel_; }

private:
    ClientPanel* panel_ = nullptr;
    std::optional<ClientChoice> choice_;
};

// "2024-25" for the year ending in 2025.
QString fy_label(int year);

}  // namespace brenlow::tarrow

#pragma once
// Pick one of the clients' financial years, or create a new one: as a panel the main
// window shows while no client is open, and as a dialog for Client -> Select.

#include <QDialog>
#include <QWidget>
#include <optional>
#include <vector>

#include "store/client_store.h"

class QTableWidget;
class QLineEdit;
class QSpinBox;
class QComboBox;
class QGroupBox;
class QPushButton;

namespace brenlow::tarrow {

struct ClientChoice {
    QString code;
    int year = 0;
    bool create = false;
    QString name;
    int status = 1;
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
    QPushButton* create_button() const { return create_; }

signals:
    void chosen(const brenlow::tarrow::ClientChoice& choice);

private slots:
    void open_selected();
    void create_new();

private:
    void fill_list();

    std::vector<store::ClientYear> years_;
    QGroupBox* existing_ = nullptr;
    QGroupBox* fresh_ = nullptr;
    QTableWidget* list_ = nullptr;
    QPushButton* open_ = nullptr;
    QLineEdit* code_ = nullptr;
    QLineEdit* name_ = nullptr;
    QSpinBox* year_ = nullptr;
    QComboBox* status_ = nullptr;
    QPushButton* create_ = nullptr;
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

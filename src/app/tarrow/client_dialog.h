#pragma once
// Pick one of the clients' financial years, or create a new one.

#include <QDialog>
#include <optional>
#include <vector>

#include "store/client_store.h"

class QTableWidget;
class QLineEdit;
class QSpinBox;
class QComboBox;

namespace brenlow::tarrow {

struct ClientChoice {
    QString code;
    int year = 0;
    bool create = false;
    QString name;
    int status = 1;
};

class ClientDialog : public QDialog {
    Q_OBJECT
public:
    ClientDialog(const std::vector<store::ClientYear>& years, int default_year, QWidget* parent = nullptr);
    std::optional<ClientChoice> choice() const { return choice_; }

private slots:
    void open_selected();
    void create_new();

private:
    std::vector<store::ClientYear> years_;
    QTableWidget* list_ = nullptr;
    QLineEdit* code_ = nullptr;
    QLineEdit* name_ = nullptr;
    QSpinBox* year_ = nullptr;
    QComboBox* status_ = nullptr;
    std::optional<ClientChoice> choice_;
};

// "2024-25" for the year ending in 2025.
QString fy_label(int year);

}  // namespace brenlow::tarrow

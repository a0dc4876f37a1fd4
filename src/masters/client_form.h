#pragma once
// The form that keeps a client: the suite's status and the kind of assessee the law
// sees, for a client being made and for one that exists. The kind follows the status
// (an individual or proprietor, a firm, a company) until the person picks one; a
// client with no kind recorded shows the kind of its status and keeps working from
// its status until a kind is saved for it.

#include <optional>
#include <string>
#include <string_view>

#include "controls/assessee_kind.h"
#include "controls/screen_controls.h"
#include "store/database.h"

namespace brenlow::masters {

// The suite's status by name: 1 an individual or proprietor, 2 a partnership firm,
// 3 and 4 companies; "Status N" for anything else.
std::string client_status_name(int status);

class ClientForm {
public:
    // A new client: status 1, its kind following it.
    ClientForm();

    ComboBox cboStatus;  // ids "1" to "4", texts by name
    ComboBox cboKind;    // ids the kinds' keys ("individual", "huf", ...)
    // "(As per Status)" while the kind follows the status, "" once one is picked or recorded.
    std::string lblKindFrom;

    // An existing client: its status, and its kind as recorded (else as its status makes it).
    void load(store::Database& db, std::string_view code, int status);
    void cboStatus_Click(int index);
    void cboKind_Click(int index);

    int status() const;
    AssesseeKind kind() const;
    // The kind to record: the one picked or recorded; nullopt while it follows the status.
    std::optional<AssesseeKind> kind_to_record() const;
    // Records the kind picked for the client; nothing while the kind follows the status.
    void save_kind(store::Database& db, std::string_view code) const;

private:
    void follow_status();
    void show_kind(AssesseeKind kind);

    bool kind_picked_ = false;
};

}  // namespace brenlow::masters

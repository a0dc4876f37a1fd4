#include "masters/client_form.h"

#include "store/client_store.h"

namespace brenlow::masters {

std::string client_status_name(int status) {
    switch (status) {
        case 1:
            return "Individual / Proprietor";
        case 2:
            return "Partnership Firm";
        case 3:
            return "Company";
        case 4:
            return "Company (Other)";
        default:
            return "Status " + std::to_string(status);
    }
}

ClientForm::ClientForm() {
    for (int s = 1; s <= 4; ++s) cboStatus.List.add(std::to_string(s), client_status_name(s));
    cboStatus.ListIndex = 0;
    cboKind.List = assessee_kind_list();
    follow_status();
}

void ClientForm::load(store::Database& db, std::string_view code, int status) {
    if (!cboStatus.select_id(std::to_string(status))) {
        // A status the suite does not name still shows, so that nothing changes it unasked.
        cboStatus.List.add(std::to_string(status), client_status_name(status));
        cboStatus.select_id(std::to_string(status));
    }
    if (const auto recorded = store::recorded_assessee_kind(db, code)) {
        kind_picked_ = true;
        show_kind(*recorded);
        lblKindFrom.clear();
    } else {
        kind_picked_ = false;
        follow_status();
    }
}

void ClientForm::cboStatus_Click(int index) {
    cboStatus.ListIndex = index;
    if (!kind_picked_) follow_status();
}

void ClientForm::cboKind_Click(int index) {
    cboKind.ListIndex = index;
    kind_picked_ = cboKind.ListIndex >= 0;
    if (kind_picked_)
        lblKindFrom.clear();
    else
        follow_status();
}

int ClientForm::status() const {
    const std::string id = cboStatus.Id();
    return id.empty() ? 1 : std::stoi(id);
}

AssesseeKind ClientForm::kind() const {
    return assessee_kind_of_key(cboKind.Id()).value_or(assessee_kind_of_status(status()));
}

std::optional<AssesseeKind> ClientForm::kind_to_record() const {
    if (!kind_picked_) return std::nullopt;
    return kind();
}

void ClientForm::save_kind(store::Database& db, std::string_view code) const {
    if (const auto k = kind_to_record()) store::record_assessee_kind(db, code, *k);
}

void ClientForm::follow_status() {
    show_kind(assessee_kind_of_status(status()));
    lblKindFrom = "(As per Status)";
}

void ClientForm::show_kind(AssesseeKind kind) {
    cboKind.select_id(assessee_kind_key(kind));
}

}  // namespace brenlow::masters

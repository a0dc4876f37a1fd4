#include "masters/client_form.h"

#include <gtest/gtest.h>

#include "masters_fixture.h"
#include "store/client_store.h"

namespace brenlow::masters::test {
namespace {

class ClientFormTest : public MastersTest {};

// What the form shows and what it would record after each step.
struct Shown {
    std::string status;
    std::string kind;
    std::string from;
    std::optional<AssesseeKind> to_record;
    bool operator==(const Shown&) const = default;
};

Shown shown(const ClientForm& f) {
    return {f.cboStatus.Text(), f.cboKind.Text(), f.lblKindFrom, f.kind_to_record()};
}

void PrintTo(const Shown& s, std::ostream* os) {
    *os << s.status << " / " << s.kind << " " << s.from << " record "
        << (s.to_record ? assessee_kind_key(*s.to_record) : "nothing");
}

TEST(ClientForm, TheKindFollowsTheStatusUntilOneIsPicked) {
    ClientForm f;
    EXPECT_EQ(shown(f), (Shown{"Individual / Proprietor", "Individual", "(As per Status)", std::nullopt}));
    f.cboStatus_Click(f.cboStatus.List.index_of_id("2"));
    EXPECT_EQ(shown(f), (Shown{"Partnership Firm", "Partnership Firm", "(As per Status)", std::nullopt}));
    f.cboStatus_Click(f.cboStatus.List.index_of_id("3"));
    EXPECT_EQ(shown(f), (Shown{"Company", "Company", "(As per Status)", std::nullopt}));
    f.cboKind_Click(f.cboKind.List.index_of_id("co-operative"));
    EXPECT_EQ(shown(f), (Shown{"Company", "Co-operative Society", "", AssesseeKind::CoopSociety}));
    // A kind picked stays when the status changes afterwards.
    f.cboStatus_Click(f.cboStatus.List.index_of_id("1"));
    EXPECT_EQ(shown(f),
              (Shown{"Individual / Proprietor", "Co-operative Society", "", AssesseeKind::CoopSociety}));
    EXPECT_EQ(f.status(), 1);
    EXPECT_EQ(f.kind(), AssesseeKind::CoopSociety);
}

TEST(ClientForm, ListsEveryKindTheRegimesTellApart) {
    ClientForm f;
    std::vector<std::string> keys;
    for (const auto& item : f.cboKind.List.items()) keys.push_back(item.id);
    EXPECT_EQ(keys, (std::vector<std::string>{"individual", "huf", "firm", "llp", "aop", "boi", "ajp",
                                              "company", "co-operative", "local-authority", "other"}));
}

// A client made before kinds were kept works from its status: the form shows the
// status's kind and saving records nothing, so the client still follows its status.
TEST_P(ClientFormTest, AnExistingClientWithoutAKindKeepsWorkingFromItsStatus) {
    base().create_client_year("F001", kYear, "SHAH AND MEHTA", 2);
    ClientForm f;
    f.load(db(), "F001", 2);
    EXPECT_EQ(shown(f), (Shown{"Partnership Firm", "Partnership Firm", "(As per Status)", std::nullopt}));
    f.save_kind(db(), "F001");
    EXPECT_EQ(store::recorded_assessee_kind(db(), "F001"), std::nullopt);
    EXPECT_EQ(store::assessee_kind_of_client(db(), "F001", 2), AssesseeKind::Firm);
}

TEST_P(ClientFormTest, AKindPickedIsRecordedAndShownWhenTheClientIsOpenedAgain) {
    base().create_client_year("F002", kYear, "KUMAR FAMILY", 1);
    ClientForm f;
    f.load(db(), "F002", 1);
    f.cboKind_Click(f.cboKind.List.index_of_id("huf"));
    f.save_kind(db(), "F002");
    EXPECT_EQ(store::recorded_assessee_kind(db(), "F002"), AssesseeKind::HUF);

    ClientForm again;
    again.load(db(), "F002", 1);
    EXPECT_EQ(shown(again),
              (Shown{"Individual / Proprietor", "Hindu Undivided Family", "", AssesseeKind::HUF}));
    // Another client is untouched.
    EXPECT_EQ(store::recorded_assessee_kind(db(), "C001"), std::nullopt);
}

TEST_P(ClientFormTest, AStatusTheSuiteDoesNotNameStillShowsAndItsKindIsOther) {
    ClientForm f;
    f.load(db(), "C001", 7);
    EXPECT_EQ(shown(f), (Shown{"Status 7", "Other", "(As per Status)", std::nullopt}));
    EXPECT_EQ(f.status(), 7);
}

BRENLOW_INSTANTIATE_BACKENDS(ClientFormTest);

}  // namespace
}  // namespace brenlow::masters::test

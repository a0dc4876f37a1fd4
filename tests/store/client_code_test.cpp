// One client code, one client: the codes' rule at the door and the exact comparison
// of the code columns on every backend.

#include "store/client_code.h"

#include <gtest/gtest.h>

#include "store/client_store.h"
#include "store/register_store.h"
#include "store/schema.h"
#include "store/sql_dialect.h"
#include "support/test_databases.h"

namespace brenlow::store {
namespace {

struct Accepted {
    const char* typed;
    const char* stored;
};

TEST(ClientCodeRule, TypedCodesAreTrimmedAndUpperCased) {
    for (const auto& c : std::initializer_list<Accepted>{{"ACME", "ACME"},
                                                         {"acme", "ACME"},
                                                         {"  c001 ", "C001"},
                                                         {"\tm&s/2024-a_b.c", "M&S/2024-A_B.C"},
                                                         {"ABCDEFGHIJ0123456789", "ABCDEFGHIJ0123456789"}}) {
        EXPECT_EQ(client_code(c.typed), c.stored) << c.typed;
        EXPECT_FALSE(client_code_fault(c.typed)) << c.typed;
    }
}

struct Refused {
    std::string typed;
    const char* says;
};

TEST(ClientCodeRule, AnythingElseIsRefusedWithTheReason) {
    for (const auto& c : std::vector<Refused>{
             {"", "The client code is empty."},
             {"   ", "The client code is empty."},
             {"ACM\xc3\x89",
              "The client code holds \"\xc3\x89\": a client code is 1 to 20 of the letters A-Z"},
             {"\xc3\x80"
              "CME",
              "The client code holds \"\xc3\x80\""},
             {"AC ME", "The client code holds a space"},
             {std::string("AC\0ME", 5), "The client code holds a control character"},
             {"ACME\xff", "The client code is not valid UTF-8 text."},
             {"ABCDEFGHIJ0123456789X", "The client code \"ABCDEFGHIJ0123456789X\" is too long"},
             {"AC'ME", "The client code holds \"'\""}}) {
        const auto fault = client_code_fault(c.typed);
        ASSERT_TRUE(fault) << c.typed;
        EXPECT_EQ(fault->rfind(c.says, 0), 0u) << *fault;
        EXPECT_THROW(client_code(c.typed), BadClientCode) << c.typed;
    }
}

class ClientCodeStoreTest : public test::BackendTest {
protected:
    void SetUp() override {
        BackendTest::SetUp();
        if (IsSkipped()) return;
        create_shared_tables(db());
        create_register_tables(db(), 2025);
    }
    void raw_opening(const std::string& code, long serial, const std::string& part) {
        db().execute("INSERT INTO NewFATRo2025 (Code_No, SrNoFATR, IdFAGM, Part) VALUES ('" + sql_text(code) +
                     "'," + std::to_string(serial) + ",1,'" + sql_text(part) + "')");
    }
};

// Rows that another program (or an older one) wrote under codes that merely look
// like ACME are never ACME's, whatever the server's collation would say.
TEST_P(ClientCodeStoreTest, LookAlikeCodesNeverReachTheClientsRows) {
    RegisterStore acme(db(), "ACME", 2025);
    OpeningRow o;
    o.IdFAGM = 1;
    o.Part = "ACME'S LATHE";
    acme.insert_opening(o);
    raw_opening("ACM\xc3\x89", 1, "ACCENTED");
    raw_opening(
        "\xc3\x80"
        "CME",
        1, "LEADING ACCENT");
    raw_opening("ACME ", 1, "TRAILING SPACE");

    const auto rows = acme.opening_entries(std::nullopt);
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0].Part, "ACME'S LATHE");

    acme.delete_all_openings(std::nullopt);
    EXPECT_EQ(db().query("SELECT COUNT(*) AS n FROM NewFATRo2025").first("n").as_int(), 3);
    RegisterStore accented(db(), "ACM\xc3\x89", 2025);
    EXPECT_EQ(accented.opening_entries(std::nullopt).size(), 1u);
}

TEST_P(ClientCodeStoreTest, AYearIsFoundByTheCodeAsTypedAndNeverByALookAlike) {
    create_client_year(db(), " acme", 2025, "ACME TRADERS", 1);
    ASSERT_TRUE(find_client_year(db(), "ACME", 2025));
    EXPECT_EQ(find_client_year(db(), "acme ", 2025)->code_no, "ACME");
    EXPECT_FALSE(find_client_year(db(), "ACM\xc3\x89", 2025));
    EXPECT_FALSE(find_client_year(db(), "AC ME", 2025));
    EXPECT_THROW(create_client_year(db(),
                                    "\xc3\x80"
                                    "CME",
                                    2025, "", std::nullopt),
                 BadClientCode);
}

// A MariaDB database made before the codes compared exactly: init gives its code
// columns the exact comparison, folding the codes the old comparison already took
// for one client.
TEST_P(ClientCodeStoreTest, InitMakesAnOlderDatabaseCompareCodesExactly) {
    if (GetParam() != Backend::mysql) {
        EXPECT_TRUE(fix_client_code_columns(db()).empty());
        return;
    }
    db().execute(
        "CREATE TABLE OldTab (code_no VarChar(50) CHARACTER SET utf8mb4 COLLATE utf8mb4_general_ci, "
        "srno Int(11))");
    db().execute("INSERT INTO OldTab VALUES ('acme',1),('ACM\xc3\x89',2),('ACME',3)");
    EXPECT_EQ(db().query("SELECT COUNT(*) AS n FROM OldTab WHERE code_no='ACME'").first("n").as_int(), 3);

    const auto fixed = fix_client_code_columns(db());
    ASSERT_EQ(fixed.size(), 1u);
    EXPECT_TRUE(equals_case_blind(fixed[0], "OldTab"));
    EXPECT_EQ(db().query("SELECT COUNT(*) AS n FROM OldTab WHERE code_no='ACME'").first("n").as_int(), 2);
    EXPECT_EQ(db().query("SELECT COUNT(*) AS n FROM OldTab WHERE code_no='ACME '").first("n").as_int(), 0);
    EXPECT_TRUE(fix_client_code_columns(db()).empty());
}

}  // namespace
BRENLOW_INSTANTIATE_BACKENDS(ClientCodeStoreTest);
}  // namespace brenlow::store

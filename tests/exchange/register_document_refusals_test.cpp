// A malformed register document is refused in the program's own words, naming the
// table, row and field where it can, and writes nothing.

#include <gtest/gtest.h>

#include "exchange/register_document.h"
#include "store/client_store.h"
#include "support/test_databases.h"

namespace brenlow::exchange {
namespace {

class RegisterDocumentRefusals : public test::BackendTest {
protected:
    void SetUp() override {
        test::BackendTest::SetUp();
        if (IsSkipped()) return;
        store::ensure_schema(db(), BRENLOW_TEST_DATA_DIR);
        store::create_client_year(db(), "C001", 2025, "ACME", 3);
    }
    long long rows(const char* table) {
        return db().query(std::string("SELECT COUNT(*) AS n FROM ") + table).first("n").as_int();
    }
};

struct Malformed {
    const char* what;
    std::string json;
    const char* says;
};

const std::string kHead = R"({"format": "brenlow-register", "version": 1, )";
const std::string kGroup = R"("NewFAGM": [{"SrNoFAGM": 1, "Part": "LATHES", "BlockIdIT": "3-15"}], )";

TEST_P(RegisterDocumentRefusals, EachMalformedDocumentIsOneLineInTheProgramsWords) {
    const std::vector<Malformed> cases = {
        {"format of the wrong type", R"({"format": 1})",
         "Not a register document: \"format\" must be \"brenlow-register\""},
        {"no object", "[1, 2]", "Not a register document: \"format\" must be \"brenlow-register\""},
        {"a number beyond a double", "1e309",
         "Not a JSON document: it holds a number too large for any amount"},
        {"empty", "  \n", "Not a JSON document: it is empty"},
        {"cut short", R"({"format": "brenlow-reg)", "Not a JSON document: it stops being JSON near byte "},
        {"not UTF-8", "{\"format\": \"brenlow-register\xff\"}", "Not a JSON document: it is not UTF-8 text"},
        {"a serial beyond Int(11)",
         kHead + kGroup + R"("NewFATRa": [{"SrNoFATR": 1e300, "IdFAGM": 1, "Part": "X"}]})",
         "NewFATRa row 1, field SrNoFATR: expected a whole number from -2147483648 to 2147483647, found "
         "1e+300"},
        {"a group id beyond Int(11)", kHead + kGroup + R"("NewFATRo": [{"IdFAGM": -9e18, "Part": "X"}]})",
         "NewFATRo row 1, field IdFAGM: expected a whole number from -2147483648 to 2147483647"},
        {"a particular too long",
         kHead + kGroup + R"("NewFATRa": [{"IdFAGM": 1, "Part": ")" + std::string(10000, 'P') + R"("}]})",
         "NewFATRa row 1, field Part: the text is longer than 255 characters"},
        {"a NUL in a text", kHead + kGroup + R"("NewFATRa": [{"IdFAGM": 1, "Part": "A\u0000B"}]})",
         "NewFATRa row 1, field Part: the text holds a NUL character"},
        {"a date too long",
         kHead + kGroup + R"("NewFATRa": [{"IdFAGM": 1, "Part": "X", "SaleDate": "01/01/2024 or so"}]})",
         "NewFATRa row 1, field SaleDate: the text is longer than 10 characters"},
        {"a date not a date",
         kHead + kGroup + R"("NewFATRa": [{"IdFAGM": 1, "Part": "X", "SaleDate": "31/02/2024"}]})",
         "NewFATRa row 1, field SaleDate: expected a date dd/mm/yyyy, found \"31/02/2024\""},
        {"a look-alike client code",
         kHead + kGroup + R"("NewFATRa": [{"Code_No": "ACMÉ", "IdFAGM": 1, "Part": "X"}]})",
         "NewFATRa row 1, field Code_No: The client code holds \"É\""},
    };
    for (const auto& c : cases) {
        const auto r = import_register(db(), "C001", 2025, c.json, {});
        ASSERT_FALSE(r.errors.empty()) << c.what;
        EXPECT_EQ(r.errors[0].rfind(c.says, 0), 0u) << c.what << ": " << r.errors[0];
        for (const auto& e : r.errors) EXPECT_EQ(e.find("json.exception"), std::string::npos) << e;
    }
    EXPECT_EQ(rows("NewFATRo2025"), 0);
    EXPECT_EQ(rows("NewFATRa2025"), 0);
}

TEST_P(RegisterDocumentRefusals, ATargetCodeNoClientCanHaveIsRefused) {
    const auto r = import_register(db(), "ACM\xc3\x89", 2025, kHead + R"("NewFATRa": []})", {});
    ASSERT_EQ(r.errors.size(), 1u);
    EXPECT_EQ(r.errors[0].rfind("The client code holds", 0), 0u) << r.errors[0];
}

// A particular cut inside a character before the checks existed (written here past
// them) does not stop the year's export; the broken bytes become U+FFFD.
TEST_P(RegisterDocumentRefusals, AnOlderBrokenTextDoesNotStopTheExport) {
    if (GetParam() == store::Backend::mysql) GTEST_SKIP() << "MariaDB's strict mode never stored such text";
    db().execute(
        "INSERT INTO NewFATRa2025 (Code_No, SrNoFATR, IdFAGM, Part) VALUES ('C001', 1, 1, 'LATHE \xe0\xa4')");
    const std::string json = export_register(db(), "C001", 2025);
    EXPECT_NE(json.find("LATHE \xef\xbf\xbd"), std::string::npos) << json;
}

}  // namespace

BRENLOW_INSTANTIATE_BACKENDS(RegisterDocumentRefusals);

}  // namespace brenlow::exchange

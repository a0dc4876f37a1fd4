// One limit per text column, the program's own, the same on every backend: what one
// server would take and another refuse is refused on both, naming the table, row
// and field, before anything is written.

#include "store/text_limits.h"

#include <gtest/gtest.h>

#include "store/client_store.h"
#include "store/masters_store.h"
#include "store/register_bulk.h"
#include "store/register_store.h"
#include "store/schema.h"
#include "support/test_databases.h"

namespace brenlow::store {
namespace {

std::string times(std::string_view piece, int n) {
    std::string out;
    for (int i = 0; i < n; ++i) out += piece;
    return out;
}

const std::string kDevanagari = "\xe0\xa4\xae";  // one letter, three bytes
const std::string kEmoji = "\xf0\x9f\x9a\x9c";   // one character, four bytes

TEST(TextLimits, AFaultIsNamedAndCountedInCharacters) {
    EXPECT_FALSE(text_fault(times(kEmoji, 255), kNameChars));
    EXPECT_EQ(*text_fault(times(kEmoji, 256), kNameChars), "is longer than 255 characters");
    EXPECT_EQ(*text_fault("A\xe0\xa4", kNameChars), "is not valid UTF-8 text");
    EXPECT_EQ(*text_fault(std::string("A\0B", 3), kNameChars), "holds a NUL character");
    try {
        check_text("NewFATRa2025 row 3", "Part", times("X", 300), kNameChars);
        FAIL();
    } catch (const TextRefused& e) {
        EXPECT_STREQ(e.what(), "NewFATRa2025 row 3, field Part: is longer than 255 characters");
    }
}

class TextLimitsStoreTest : public test::BackendTest {
protected:
    void SetUp() override {
        BackendTest::SetUp();
        if (IsSkipped()) return;
        create_shared_tables(db());
        create_register_tables(db(), 2025);
    }
    long count() {
        return static_cast<long>(db().query("SELECT COUNT(*) AS n FROM NewFATRa2025").first("n").as_int());
    }
};

TEST_P(TextLimitsStoreTest, TextsUpToTheLimitComeBackWholeInAnyScript) {
    RegisterStore reg(db(), "C001", 2025);
    AdditionRow a;
    a.IdFAGM = 1;
    a.Part = times(kDevanagari, 255);
    a.ShiftDet = times(kEmoji, kLongTextChars);
    reg.insert_addition(a);
    const auto rows = reg.addition_entries(std::nullopt);
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0].Part, a.Part);
    EXPECT_EQ(rows[0].ShiftDet, a.ShiftDet);
}

TEST_P(TextLimitsStoreTest, ATooLongParticularIsRefusedTheSameWayOnEveryBackend) {
    RegisterStore reg(db(), "C001", 2025);
    AdditionRow a;
    a.IdFAGM = 1;
    a.Part = times("P", 10000);
    try {
        reg.insert_addition(a);
        FAIL();
    } catch (const TextRefused& e) {
        EXPECT_STREQ(e.what(), "NewFATRa2025 new row, field Part: is longer than 255 characters");
    }
    std::vector<AdditionRow> rows(3);
    for (auto& r : rows) r.Part = "FINE";
    rows[1].OthOpts = std::string("A\0B", 3);
    try {
        insert_additions(db(), "C001", 2025, rows);
        FAIL();
    } catch (const TextRefused& e) {
        EXPECT_STREQ(e.what(), "NewFATRa2025 row 2, field OthOpts: holds a NUL character");
    }
    EXPECT_EQ(count(), 0);
}

TEST_P(TextLimitsStoreTest, AnEditIsCheckedLikeANewRow) {
    RegisterStore reg(db(), "C001", 2025);
    AdditionRow a;
    a.IdFAGM = 1;
    a.Part = "LATHE";
    a.SrNoFATR = reg.insert_addition(a);
    a.Part = "LATHE \xff";
    EXPECT_THROW(reg.update_addition(a), TextRefused);
    EXPECT_EQ(reg.addition_entries(std::nullopt).at(0).Part, "LATHE");
}

TEST_P(TextLimitsStoreTest, MastersAndSettingsAreCheckedBeforeWriting) {
    const std::string bad_utf8 = "RATE \xe0\xa4", nul("A\0B", 3), long_name = times(kEmoji, 256);
    try {
        set_setting(db(), "Tarrow", "Printer", bad_utf8);
        FAIL();
    } catch (const TextRefused& e) {
        EXPECT_STREQ(e.what(), "Mast_Setting row Printer, field SetVal: is not valid UTF-8 text");
    }
    EXPECT_THROW(set_misc_info(db(), "C001", "31/03/2025", "MANDEP", nul, ""), TextRefused);
    EXPECT_THROW(mast_part_id(db(), long_name), TextRefused);
    Particular p;
    p.year = 2025;
    p.id = 1;
    p.name = long_name;
    EXPECT_THROW(insert_particular(db(), p), TextRefused);
    AssetGroupRow g;
    g.Yr = 2025;
    g.Part = long_name;
    EXPECT_THROW(add_asset_group(db(), g), TextRefused);
    for (const char* t : {"Mast_Setting", "Mast_MiscOthInf", "Mast_Part", "FAPart_Master", "NewFAGM"})
        EXPECT_EQ(db().query(std::string("SELECT COUNT(*) AS n FROM ") + t).first("n").as_int(), 0) << t;
}

// A database made with the server's latin1 default still gets tables that hold any
// script: the program's tables name their own character set.
TEST_P(TextLimitsStoreTest, TablesHoldAnyScriptWhateverTheDatabasesDefault) {
    if (GetParam() != Backend::mysql) GTEST_SKIP() << "character sets are a server's";
    db().execute("ALTER DATABASE CHARACTER SET latin1 COLLATE latin1_swedish_ci");
    create_register_tables(db(), 2031);
    RegisterStore reg(db(), "C001", 2031);
    AdditionRow a;
    a.IdFAGM = 1;
    a.Part = times(kDevanagari, 10) + " " + kEmoji;
    reg.insert_addition(a);
    EXPECT_EQ(reg.addition_entries(std::nullopt).at(0).Part, a.Part);
}

}  // namespace

BRENLOW_INSTANTIATE_BACKENDS(TextLimitsStoreTest);

}  // namespace brenlow::store

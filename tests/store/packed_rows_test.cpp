// Packed sub-lists keep their rows whatever the person typed into a field.

#include <gtest/gtest.h>

#include "store/register_store.h"
#include "store/schema.h"
#include "support/test_databases.h"

namespace brenlow::store {
namespace {

const std::string kBar = "\xC2\xA6";

TEST(PackedRows, FieldsLoseBothSeparatorsBeforePacking) {
    const std::vector<std::vector<std::string>> esa = {
        {"CAR | SCOOTER", "100", "01/05/2024", "0", "0", "100"},
        {"OLD" + kBar + "CHAIR", "50", "", "", "", "50"}};
    const auto packed = pack_rows(esa, kBar);
    EXPECT_EQ(packed, "CAR  SCOOTER" + kBar + "100" + kBar + "01/05/2024" + kBar + "0" + kBar + "0" + kBar +
                          "100|" + "OLDCHAIR" + kBar + "50" + kBar + kBar + kBar + kBar + "50");
    const auto back = unpack_rows(packed, kBar);
    ASSERT_EQ(back.size(), 2u);
    EXPECT_EQ(back[0][0], "CAR  SCOOTER");
    EXPECT_EQ(back[0][5], "100");
    EXPECT_EQ(back[1][0], "OLDCHAIR");

    const auto shifts = unpack_rows(pack_rows({{"01/04/2024", "30,04/2024", "2|"}}, ","), ",");
    ASSERT_EQ(shifts.size(), 1u);
    EXPECT_EQ(shifts[0], (std::vector<std::string>{"01/04/2024", "3004/2024", "2"}));
}

class PackedRowsStoreTest : public test::BackendTest {
protected:
    void SetUp() override {
        BackendTest::SetUp();
        if (IsSkipped()) return;
        create_shared_tables(db());
        create_register_tables(db(), 2025);
    }
};

TEST_P(PackedRowsStoreTest, AnAdjustmentRowWithABarInItsParticularsReadsBackAsOneRow) {
    RegisterStore reg(db(), "C001", 2025);
    OpeningRow o;
    o.IdFAGM = 1;
    o.Part = "VEHICLES";
    o.DetESA = pack_rows({{"CAR|SCOOTER", "100000", "01/05/2024", "40000", "0", "60000"}}, kBar);
    reg.insert_opening(o);
    const auto rows = unpack_rows(reg.opening_entries(std::nullopt).at(0).DetESA, kBar);
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0].size(), 6u);
    EXPECT_EQ(rows[0][0], "CARSCOOTER");
    EXPECT_EQ(rows[0][5], "60000");
}

}  // namespace

BRENLOW_INSTANTIATE_BACKENDS(PackedRowsStoreTest);

}  // namespace brenlow::store

// When two tables count as holding the same.

#include "tests/support/policy_test.h"

namespace {

class ContentHashTest : public PolicyTest {
 protected:
  std::string HashAfter(const std::string& sql, const char* table = "device_groups") {
    Sql(sql);
    std::string hash = "untouched";
    db().GetContentHash(hash, table);
    return hash;
  }
};

TEST_F(ContentHashTest, TellsEveryDifferenceOfRowsAndNothingElse) {
  const std::string empty = HashAfter("");
  EXPECT_EQ(empty, "da39a3ee5e6b4b0d3255bfef95601890afd80709") << "that of no text";
  const auto refill = [&] {
    return db().ClearDeviceGroups() &&
           db().AddDeviceGroups(R"([{"id": 1, "name": "a"}, {"id": 2, "name": "b'\nß"}])");
  };
  ASSERT_TRUE(refill());
  const std::string both = HashAfter("");
  EXPECT_EQ(both, "a7d36f715019daea22fd3586a8c70bdc4f7f31ee") << "the same on every machine";
  constexpr const char* kOther[] = {"UPDATE device_groups SET name='c' WHERE id=1",
                                    "UPDATE device_groups SET name=NULL WHERE id=1",
                                    "UPDATE device_groups SET name='' WHERE id=1",
                                    "UPDATE device_groups SET name=x'61' WHERE id=1",
                                    "UPDATE device_groups SET id=3 WHERE id=1",
                                    "INSERT INTO device_groups(name) VALUES('a')",
                                    "INSERT INTO device_groups(name) VALUES('a'), ('a')",
                                    "DELETE FROM device_groups WHERE id=1"};
  std::set<std::string> hashes = {empty, both};
  for (const char* change : kOther) {
    hashes.insert(HashAfter(change));
    ASSERT_TRUE(refill());
    EXPECT_EQ(HashAfter(""), both) << change;
  }
  EXPECT_EQ(hashes.size(), std::size(kOther) + 2);
  EXPECT_EQ(HashAfter("UPDATE device_groups SET id=id+10; INSERT INTO device_groups SELECT id-10, "
                      "account_id, name, is_default FROM device_groups ORDER BY id DESC; DELETE "
                      "FROM device_groups WHERE id>10"),
            both)
      << "rows in another order";
}

TEST_F(ContentHashTest, LeavesOutWhatNoDocumentFills) {
  const std::string rule_set = HashAfter("INSERT INTO app_controls(id) VALUES(1)", "app_controls");
  EXPECT_EQ(HashAfter("UPDATE app_controls SET policy_id=7", "app_controls"), rule_set);
  const std::string scan =
      HashAfter("INSERT INTO last_scan_summaries(device_id) VALUES(1)", "last_scan_summaries");
  EXPECT_EQ(HashAfter("UPDATE last_scan_summaries SET id=7", "last_scan_summaries"), scan);
  EXPECT_EQ(HashAfter("", "sqlite_schema") + HashAfter("", nullptr), "untoucheduntouched");
  EXPECT_EQ(HashAfter("DROP TABLE device_groups"), "untouched");
}

}  // namespace

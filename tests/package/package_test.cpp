// A host's use of the shared library: exceptions, memory and the engine across its boundary.

#include <gtest/gtest.h>
#include <rapidjson/document.h>
#include <sqlite3.h>

#include <list>
#include <memory>
#include <string>

#include "wexpol.h"

namespace {

constexpr int kFlags = SQLITE_OPEN_READWRITE;

TEST(Package, AWrongAccessCodeThrowsAnInt) {
  try {
    CPolicyDB session("0", L"none.db", kFlags, 0);
    FAIL() << "the session was made";
  } catch (int code) {
    EXPECT_EQ(code, 0);
  }
}

TEST(Package, ASessionWithoutAFileAnswersFailures) {
  CPolicyDB session("60718", L"no-such-folder/none.db", kFlags, 0);
  std::list<CDevice*> devices;
  EXPECT_FALSE(session.IsValidDB());
  EXPECT_FALSE(session.GetDevices(devices, nullptr, 0));
  EXPECT_FALSE(session.ClearNics());
}

TEST(Package, RecordsWorkOnAHandleOfTheHost) {
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open(":memory:", &db), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(db, "CREATE TABLE device_groups (id, account_id, name, is_default)",
                         nullptr, nullptr, nullptr),
            SQLITE_OK);

  rapidjson::Document document;
  document.Parse(R"({"id": 7, "account_id": 1, "name": "K\u00fcche", "is_default": true})");
  CDeviceGroup group;
  ASSERT_TRUE(group.ParseJson(document));
  ASSERT_EQ(group.Add2DB(db), SQLITE_DONE);

  sqlite3_stmt* statement = nullptr;
  ASSERT_EQ(sqlite3_prepare_v2(db, "SELECT * FROM device_groups", -1, &statement, nullptr),
            SQLITE_OK);
  ASSERT_EQ(sqlite3_step(statement), SQLITE_ROW);
  CDeviceGroup read;
  read.CopyFromDB(statement);
  sqlite3_finalize(statement);
  EXPECT_EQ(read.is_default, 1);

  std::string json;
  read.GenerateJson(json);
  document.Parse(json.c_str());
  EXPECT_STREQ(document["name"].GetString(),
               "K\xc3\xbc"
               "che");

  // The text was made in the library; it is the host's now.
  const std::unique_ptr<const wchar_t[]> name(read.name.get());
  read.Reset(false);
  EXPECT_STREQ(name.get(), L"K\u00fcche");
  EXPECT_EQ(sqlite3_close(db), SQLITE_OK);
}

}  // namespace

#include "tests/support/policy_test.h"

#include <cstdio>

#include "tools/provision/provision.h"

PolicyTest::PolicyTest() {
  std::string error;
  EXPECT_TRUE(wexpol::CreateDatabase(path(), error)) << error;
  db_ = std::make_unique<CPolicyDB>(kAccessCode, path().c_str(), kReadWrite, 2000);
  handle_ = wexpol::OpenKeyed(path(), kReadWrite);
  EXPECT_TRUE(db_->IsValidDB());
  Sql("PRAGMA synchronous = OFF");
}

PolicyTest::~PolicyTest() { CloseAll(); }

std::wstring PolicyTest::path() const { return CFilePaths::GetLocationDB(); }

void PolicyTest::CloseAll() {
  db_->CloseDB();
  EXPECT_EQ(sqlite3_close(handle_), SQLITE_OK);
  handle_ = nullptr;
}

void PolicyTest::SqlOn(sqlite3* db, const std::string& statements) {
  EXPECT_EQ(sqlite3_exec(db, statements.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
      << statements << ": " << sqlite3_errmsg(db);
}

std::vector<std::string> PolicyTest::RowsOf(sqlite3* db, const std::string& select) {
  std::vector<std::string> rows;
  sqlite3_stmt* statement = nullptr;
  EXPECT_EQ(sqlite3_prepare_v2(db, select.c_str(), -1, &statement, nullptr), SQLITE_OK)
      << select << ": " << sqlite3_errmsg(db);
  while (sqlite3_step(statement) == SQLITE_ROW) {
    std::string row;
    for (int column = 0; column < sqlite3_column_count(statement); ++column) {
      if (column) row += '|';
      const int type = sqlite3_column_type(statement, column);
      const auto* cell = static_cast<const unsigned char*>(sqlite3_column_blob(statement, column));
      for (int i = 0; i < sqlite3_column_bytes(statement, column); ++i) {
        char digits[3];
        std::snprintf(digits, sizeof digits, type == SQLITE_BLOB ? "%02x" : "%c", cell[i]);
        row += digits;
      }
      if (type == SQLITE_NULL) row += "NULL";
    }
    rows.push_back(row);
  }
  sqlite3_finalize(statement);
  return rows;
}

std::string PolicyTest::Row(const std::string& select) {
  const auto rows = Rows(select);
  return rows.empty() ? std::string() : rows.front();
}

void Provision(const std::wstring& file, int account_id) {
  std::string error;
  ASSERT_TRUE(wexpol::CreateDatabase(file, error)) << error;
  CPolicyDB db(kAccessCode, file.c_str(), kReadWrite, 100);
  const std::string json = "{\"id\": " + std::to_string(account_id) + ", \"locale_id\": 1}";
  ASSERT_TRUE(db.ClearAndAddAccounts(json.c_str()));
}

int AccountOf(CPolicyDB& db) {
  CAccount account;
  return db.GetRecord(account) ? account.id : 0;
}

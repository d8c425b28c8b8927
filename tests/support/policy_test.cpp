#include "tests/support/policy_test.h"

#include <cstdio>

#include "tools/provision/provision.h"
#include "wexpol/platform/file_paths.h"
#include "wexpol/platform/text.h"

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

void PolicyTest::Sql(const std::string& statements) {
  EXPECT_EQ(sqlite3_exec(handle_, statements.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
      << statements << ": " << sqlite3_errmsg(handle_);
}

std::vector<std::string> PolicyTest::Rows(const std::string& select) {
  std::vector<std::string> rows;
  sqlite3_stmt* statement = nullptr;
  EXPECT_EQ(sqlite3_prepare_v2(handle_, select.c_str(), -1, &statement, nullptr), SQLITE_OK)
      << select << ": " << sqlite3_errmsg(handle_);
  while (sqlite3_step(statement) == SQLITE_ROW) {
    std::string row;
    for (int column = 0; column < sqlite3_column_count(statement); ++column) {
      if (column) row += '|';
      if (sqlite3_column_type(statement, column) == SQLITE_BLOB) {
        const auto* bytes =
            static_cast<const unsigned char*>(sqlite3_column_blob(statement, column));
        for (int i = 0; i < sqlite3_column_bytes(statement, column); ++i) {
          char digits[3];
          std::snprintf(digits, sizeof digits, "%02x", bytes[i]);
          row += digits;
        }
      } else {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
        row += text ? text : "NULL";
      }
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

// The fixture of the tests that need a database.

#ifndef WEXPOL_TESTS_SUPPORT_POLICY_TEST_H_
#define WEXPOL_TESTS_SUPPORT_POLICY_TEST_H_

#include <sqlite3.h>

#include <list>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/test_environment.h"
#include "wexpol.h"
#include "wexpol/records/document.h"

inline constexpr char kAccessCode[] = "60718";
inline constexpr int kReadWrite = SQLITE_OPEN_READWRITE;

// A fresh provisioned database at the installed location of a folder, registry and clock of its
// own, with a session and a raw handle on it.
class PolicyTest : public ::testing::Test {
 protected:
  PolicyTest();
  ~PolicyTest() override;

  CPolicyDB& db() { return *db_; }
  // Another connection to the same file, for record operations and for looking at rows.
  sqlite3* handle() { return handle_; }
  TestEnvironment& environment() { return environment_; }
  FakeClock& clock() { return environment_.clock(); }
  std::wstring path() const;

  // Closes both connections, so that the file itself can be worked on.
  void CloseAll();

  // Another session on the same file.
  CPolicyDB Open(int timeout_ms = 100) {
    return CPolicyDB(kAccessCode, path().c_str(), kReadWrite, timeout_ms);
  }

  // Runs statements; a failure fails the test.
  void Sql(const std::string& statements) { SqlOn(handle_, statements); }
  static void SqlOn(sqlite3* db, const std::string& statements);
  // The rows of a select: columns joined by '|', NULL as "NULL", blobs as hexadecimal digits.
  std::vector<std::string> Rows(const std::string& select) { return RowsOf(handle_, select); }
  static std::vector<std::string> RowsOf(sqlite3* db, const std::string& select);
  // The first of them; empty when there is none.
  std::string Row(const std::string& select);

  // What GenerateJson makes of a record.
  template <typename Record>
  static std::string Json(const Record& record) {
    std::string out;
    record.GenerateJson(out);
    return out;
  }

 private:
  TestEnvironment environment_;
  std::unique_ptr<CPolicyDB> db_;
  sqlite3* handle_;
};

// Records as the library lists them: filled by a Get... operation, deleted at the end.
template <typename Record>
class RecordList {
 public:
  RecordList() = default;
  RecordList(const RecordList&) = delete;
  RecordList& operator=(const RecordList&) = delete;
  ~RecordList() {
    for (Record* record : list) delete record;
  }
  std::list<Record*> list;
};

// Makes a database file whose account id tells which file it is, and what a session finds in its
// own; 0 is none.
void Provision(const std::wstring& file, int account_id);
int AccountOf(CPolicyDB& db);

// Parses a JSON text into a record; false as ParseJson, or when the text is no JSON.
template <typename Record>
bool ParseText(Record& record, const std::string& json) {
  wexpol::Document document;
  return document.Parse(json.c_str()) && record.ParseJson(document.root());
}

#endif  // WEXPOL_TESTS_SUPPORT_POLICY_TEST_H_

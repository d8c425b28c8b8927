// The session: search, open, copy, restore, integrity, transactions.

#include <cstring>

#include "tests/support/policy_test.h"
#include "tools/provision/provision.h"
#include "wexpol/platform/file_paths.h"
#include "wexpol/platform/files.h"
#include "wexpol/policydb/connection.h"

namespace {

constexpr wchar_t kName[] = L"wexpol.db";

// A database file whose account id tells which file was opened.
void Provision(const std::wstring& file, int account_id) {
  std::string error;
  ASSERT_TRUE(wexpol::CreateDatabase(file, error)) << error;
  CPolicyDB db(kAccessCode, file.c_str(), kReadWrite, 100);
  const std::string json = "{\"id\": " + std::to_string(account_id) + ", \"locale_id\": 1}";
  ASSERT_TRUE(db.ClearAndAddAccounts(json.c_str()));
}

int AccountOf(CPolicyDB& db) {
  CAccount account;
  db.GetRecord(account);
  return account.id;
}

class SearchTest : public ::testing::Test {
 protected:
  ~SearchTest() override { wexpol::RemoveFile(beside_); }

  int Found() {
    CPolicyDB db(kAccessCode, kReadWrite, 100);
    return db.IsValidDB() ? AccountOf(db) : 0;
  }

  TestEnvironment environment_;
  std::wstring beside_ = wexpol::ReplaceFileName(wexpol::ExecutablePath(), kName);
};

TEST_F(SearchTest, TheFirstFileThatOpensIsTaken) {
  EXPECT_EQ(Found(), 0);
  const std::string log = ReadBytes(CFilePaths::GetLocationLogFile());
  EXPECT_NE(log.find("WexPol > SQLite error: 14 : "), std::string::npos) << log;

  Provision(CFilePaths::GetLocationBackupDB(), 4);
  WriteBytes(CFilePaths::GetLocationDB() + L"-wal", "left over");
  EXPECT_EQ(Found(), 4);  // The backup, copied to the installed location.
  wexpol::RemoveFile(CFilePaths::GetLocationDB());
  Provision(CFilePaths::GetLocationDB(), 3);
  EXPECT_EQ(Found(), 3);
  Provision(beside_, 1);
  EXPECT_EQ(Found(), 1);
}

TEST_F(SearchTest, AWrongAccessCodeThrowsZero) {
  for (const char* code : {"", "60719", "6071", "607180", " 60718"}) {
    try {
      CPolicyDB db(code, kReadWrite, 0);
      FAIL() << code;
    } catch (int thrown) {
      EXPECT_EQ(thrown, 0);
    }
    EXPECT_THROW(CPolicyDB(code, L"x", kReadWrite, 0), int);
  }
  EXPECT_THROW(CPolicyDB(nullptr, kReadWrite, 0), int);
}

class SessionTest : public PolicyTest {};

TEST_F(SessionTest, OpenAnswersTheEnginesCode) {
  CPolicyDB other(kAccessCode, L"", kReadWrite, 0);
  EXPECT_FALSE(other.IsValidDB());
  EXPECT_EQ(other.OpenDB(nullptr, kReadWrite, 0), SQLITE_CANTOPEN);
  EXPECT_EQ(other.OpenDB(L"", kReadWrite | SQLITE_OPEN_CREATE, 0), SQLITE_CANTOPEN);
  const std::wstring missing = environment().PathOf(L"missing.db");
  EXPECT_EQ(other.OpenDB(missing.c_str(), kReadWrite, 0), SQLITE_CANTOPEN);
  const std::wstring too_long(260, L'x');
  EXPECT_EQ(other.OpenDB(too_long.c_str(), kReadWrite | SQLITE_OPEN_CREATE, 0), SQLITE_CANTOPEN);
  EXPECT_FALSE(other.IsValidDB());
  EXPECT_EQ(other.OpenDB(path().c_str(), SQLITE_OPEN_READONLY, -5), SQLITE_OK);
  EXPECT_FALSE(other.ClearLogins());
  other.CloseDB();
  other.CloseDB();
  EXPECT_FALSE(other.IsValidDB());
  const std::wstring unicode = environment().PathOf(L"R\u00E4ume \u0416.db");
  Provision(unicode, 6);
  ASSERT_EQ(other.OpenDB(unicode.c_str(), kReadWrite, 0), SQLITE_OK);
  EXPECT_EQ(AccountOf(other), 6);
}

TEST_F(SessionTest, EveryOperationFailsOnAClosedSession) {
  db().CloseDB();
  CAccount account;
  RecordList<CLogin> logins;
  std::uint64_t mask = 0;
  std::string out;
  EXPECT_FALSE(db().GetRecord(account));
  EXPECT_FALSE(db().AddLogins("[{\"id\": 1}]"));
  EXPECT_FALSE(db().ClearAndAddDevices("[]") || db().UpdateDevices("[]"));
  EXPECT_FALSE(db().ClearLogins());
  EXPECT_FALSE(db().GetLogins(logins.list, "id", 1));
  EXPECT_NE(db().GetError().find("\"code\": 21"), std::string::npos);
  EXPECT_FALSE(db().CheckIntegrity());
  EXPECT_FALSE(db().Transaction(TRANSACTION_BEGIN));
  db().GetGlobalTableJson(mask, out);
  EXPECT_EQ(mask, 0x207F8000000u);
}

TEST_F(SessionTest, CopiesShareOneConnection) {
  ASSERT_TRUE(db().ClearAndAddAccounts("{\"id\": 5, \"locale_id\": 1}"));
  auto copy = std::make_unique<CPolicyDB>(db());
  CPolicyDB assigned(kAccessCode, L"", kReadWrite, 0);
  assigned = *copy;
  EXPECT_EQ(AccountOf(assigned), 5);
  copy.reset();  // Whoever ends first closes it for all.
  EXPECT_FALSE(db().IsValidDB());
  EXPECT_FALSE(assigned.IsValidDB());
  EXPECT_FALSE(assigned.ClearLogins());
  ASSERT_EQ(db().OpenDB(path().c_str(), kReadWrite, 0), SQLITE_OK);
  EXPECT_FALSE(assigned.IsValidDB());
  db() = db();
  EXPECT_EQ(AccountOf(db()), 5);
}

TEST_F(SessionTest, TransactionsAreOneStatementEach) {
  EXPECT_FALSE(db().Transaction(TRANSACTION_COMMIT));
  EXPECT_FALSE(db().Transaction(TRANSACTION_ROLLBACK));
  EXPECT_FALSE(db().Transaction(static_cast<TRANSACTION>(3)));
  EXPECT_TRUE(db().Transaction(TRANSACTION_BEGIN));
  EXPECT_FALSE(db().Transaction(TRANSACTION_BEGIN));
  EXPECT_TRUE(db().AddLogins("{\"id\": 1}"));
  EXPECT_EQ(Row("SELECT count(*) FROM logins"), "0");
  EXPECT_TRUE(db().Transaction(TRANSACTION_COMMIT));
  EXPECT_EQ(Row("SELECT count(*) FROM logins"), "1");
  EXPECT_EQ(db().GetError(), "");
}

TEST_F(SessionTest, RestorePutsTheBackupInPlace) {
  ASSERT_TRUE(db().ClearAndAddAccounts("{\"id\": 5, \"locale_id\": 1}"));
  EXPECT_TRUE(db().RestoreDB());  // Without a backup it only opens.
  EXPECT_EQ(AccountOf(db()), 5);
  Provision(CFilePaths::GetLocationBackupDB(), 9);
  CloseAll();
  WriteBytes(path(), "no database at all");
  WriteBytes(path() + L"-wal", "left over");
  CPolicyDB broken(kAccessCode, path().c_str(), kReadWrite, 100);
  EXPECT_FALSE(broken.CheckIntegrity());
  EXPECT_TRUE(broken.RestoreDB());
  EXPECT_EQ(AccountOf(broken), 9);
  EXPECT_TRUE(broken.CheckIntegrity());
  broken.CloseDB();
  wexpol::RemoveFile(CFilePaths::GetLocationBackupDB());
  wexpol::RemoveFile(path());
  EXPECT_FALSE(broken.RestoreDB());
  EXPECT_FALSE(broken.IsValidDB());
}

TEST_F(SessionTest, AFileWithoutItsTablesIsNotProvisioned) {
  EXPECT_TRUE(db().IsProvisioned());
  for (const char* lost : {"DROP TABLE alerts_sent", "DROP VIEW remote_control_settings"}) {
    ASSERT_EQ(sqlite3_exec(wexpol::HandleOf(db()), "BEGIN", nullptr, nullptr, nullptr), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(wexpol::HandleOf(db()), lost, nullptr, nullptr, nullptr), SQLITE_OK);
    EXPECT_FALSE(db().IsProvisioned()) << lost;
    ASSERT_EQ(sqlite3_exec(wexpol::HandleOf(db()), "ROLLBACK", nullptr, nullptr, nullptr),
              SQLITE_OK);
  }
  CloseAll();
  WriteBytes(path(), "");
  CPolicyDB empty(kAccessCode, path().c_str(), kReadWrite, 100);
  EXPECT_TRUE(empty.CheckIntegrity());
  EXPECT_FALSE(empty.IsProvisioned());
  empty.CloseDB();
  EXPECT_FALSE(empty.IsProvisioned());
}

TEST_F(SessionTest, AChangedPageIsRefused) {
  std::string rows = "[";
  for (int i = 1; i < 400; ++i) rows += "{\"id\": " + std::to_string(i) + "},";
  ASSERT_TRUE(db().ClearAndAddDevices((rows + "{\"id\": 400}]").c_str()));
  EXPECT_TRUE(db().CheckIntegrity());
  CloseAll();
  const std::string sound = ReadBytes(path());
  EXPECT_EQ(sound.find("devices"), std::string::npos);  // Nothing lies there in clear.
  const auto intact = [&](const std::string& bytes) {
    WriteBytes(path(), bytes);
    CPolicyDB db(kAccessCode, path().c_str(), kReadWrite, 100);
    return db.CheckIntegrity();
  };
  EXPECT_TRUE(intact(sound));
  for (std::size_t at = 100; at < sound.size(); at += 4096) {
    std::string changed = sound;
    changed[at] = static_cast<char>(changed[at] ^ 1);
    EXPECT_FALSE(intact(changed)) << at;
  }
  EXPECT_FALSE(intact(sound.substr(0, sound.size() / 2)));
  EXPECT_FALSE(intact(std::string(8192, '\0')));
}

}  // namespace

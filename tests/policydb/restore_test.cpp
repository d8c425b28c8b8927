// What a restore leaves for everybody who has the file open, and what it leaves when it fails.

#include "tests/support/child_process.h"
#include "tests/support/policy_test.h"
#include "tools/provision/provision.h"
#include "wexpol/platform/file_paths.h"
#include "wexpol/platform/files.h"
#include "wexpol/platform/named_mutex.h"
#include "wexpol/policydb/connection.h"

namespace {

constexpr int kOld = 5, kBackup = 9;
constexpr wchar_t kRestored[] = L"Global\\Restored";

int AccountOf(CPolicyDB& db) {
  CAccount account;
  return db.GetRecord(account) ? account.id : 0;
}

std::size_t LoginsOf(CPolicyDB& db) {
  RecordList<CLogin> logins;
  return db.GetLogins(logins.list, nullptr, 0) ? logins.list.size() : 0;
}

// Writes rows into the log and keeps the file open; once it is restored, reads, writes and reads.
int HoldAndLook(const Arguments&) {
  CPolicyDB db(kAccessCode, CFilePaths::GetLocationDB().c_str(), kReadWrite, 20'000);
  sqlite3_exec(wexpol::HandleOf(db), "PRAGMA wal_autocheckpoint=0", nullptr, nullptr, nullptr);
  std::string rows = "[{\"id\": 1}";
  for (int id = 2; id <= 3500; ++id) rows += ",{\"id\": " + std::to_string(id) + "}";
  wexpol::NamedMutex restored(kRestored);
  if (!db.Transaction(TRANSACTION_BEGIN) || !db.AddLogins((rows + "]").c_str()) ||
      !db.Transaction(TRANSACTION_COMMIT)) {
    return 2;
  }
  if (restored.Wait(60'000) != wexpol::NamedMutex::WaitResult::kObtained) return 3;
  if (AccountOf(db) != kBackup || LoginsOf(db) != 0) return 4;
  return db.AddLogins("{\"id\": 7}") && LoginsOf(db) == 1 && db.CheckIntegrity() ? 0 : 5;
}
const ChildFunction kHoldAndLook("restore_hold_and_look", HoldAndLook);

class RestoreTest : public PolicyTest {
 protected:
  RestoreTest() {
    const std::wstring backup = CFilePaths::GetLocationBackupDB();
    std::string error;
    EXPECT_TRUE(wexpol::CreateDatabase(backup, error)) << error;
    Fill(backup, kBackup);
    Fill(path(), kOld);
  }
  static void Fill(const std::wstring& file, int account) {
    CPolicyDB db(kAccessCode, file.c_str(), kReadWrite, 100);
    const std::string json = "{\"id\": " + std::to_string(account) + ", \"locale_id\": 1}";
    EXPECT_TRUE(db.ClearAndAddAccounts(json.c_str()));
  }
};

TEST_F(RestoreTest, EveryProcessSeesExactlyTheBackup) {
  wexpol::NamedMutex restored(kRestored);
  ASSERT_EQ(restored.Wait(0), wexpol::NamedMutex::WaitResult::kObtained);
  ChildProcess holder(environment().folder(), "restore_hold_and_look");
  while (Row("SELECT count(*) FROM logins") != "3500") {
  }
  EXPECT_TRUE(db().RestoreDB());
  EXPECT_EQ(AccountOf(db()), kBackup);
  EXPECT_EQ(Row("SELECT count(*) FROM logins"), "0") << "seen by a connection from before";
  restored.Release();
  EXPECT_TRUE(holder.Succeeded());
  EXPECT_EQ(LoginsOf(db()), 1u);
  EXPECT_TRUE(db().CheckIntegrity());
}

TEST_F(RestoreTest, ADamagedFileIsReplacedAndItsLogGoesWithIt) {
  CloseAll();
  const std::string sound = ReadBytes(path());
  for (const std::size_t at : {100u, 4096u * 3 + 50, 4096u * 20 + 50}) {
    std::string damaged = sound;
    damaged.at(at) = static_cast<char>(damaged[at] ^ 1);
    WriteBytes(path(), damaged);
    WriteBytes(path() + L"-wal", "left over");
    CPolicyDB db(kAccessCode, path().c_str(), kReadWrite, 100);
    EXPECT_FALSE(db.CheckIntegrity()) << at;
    EXPECT_TRUE(db.RestoreDB()) << at;
    EXPECT_EQ(AccountOf(db), kBackup) << at;
    EXPECT_TRUE(db.CheckIntegrity()) << at;
  }
}

TEST_F(RestoreTest, WhatCannotBeRestoredIsAsItWas) {
  WriteBytes(CFilePaths::GetLocationBackupDB(), "no database at all");
  EXPECT_TRUE(db().RestoreDB());
  EXPECT_EQ(AccountOf(db()), kOld) << "the backup is damaged";
  EXPECT_TRUE(db().CheckIntegrity());
  Sql("BEGIN IMMEDIATE");
  CPolicyDB other(kAccessCode, path().c_str(), kReadWrite, 0);
  EXPECT_TRUE(other.RestoreDB());
  Sql("COMMIT");
  EXPECT_EQ(AccountOf(other), kOld) << "somebody writes";
}

TEST_F(RestoreTest, LookingLeavesNothingBehind) {
  CloseAll();
  const auto look = [&] {
    CPolicyDB db(kAccessCode, L"", kReadWrite, 0);
    ASSERT_EQ(wexpol::OpenUntouched(db, path(), 0), SQLITE_OK);
    EXPECT_EQ(AccountOf(db), kOld);
    EXPECT_FALSE(db.ClearLogins());
  };
  const std::wstring log = path() + L"-wal", index = path() + L"-shm";
  ASSERT_TRUE(wexpol::FileExists(log) && wexpol::FileExists(index)) << "they stay at the close";
  EXPECT_EQ(ReadBytes(log), "") << "emptied";
  const std::string before = ReadBytes(path());
  look();
  EXPECT_TRUE(wexpol::FileExists(log) && wexpol::FileExists(index));
  ASSERT_TRUE(wexpol::RemoveFile(log) && wexpol::RemoveFile(index));
  look();
  EXPECT_FALSE(wexpol::FileExists(path() + L"-*")) << "a lone copy stays alone";
  EXPECT_EQ(ReadBytes(path()), before);
}

}  // namespace

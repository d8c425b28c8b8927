// The session: search, open, copy, integrity, transactions; what a restore leaves for everybody who
// has the file open, and a full disk of a synchronisation.

#include <filesystem>

#include "tests/support/child_process.h"
#include "tests/support/policy_test.h"
#include "wexpol/platform/named_mutex.h"
#include "wexpol/policydb/connection.h"

namespace {

namespace fs = std::filesystem;

// Succeeds when the search from the folder opens the file of that account; none is 0.
const ChildFunction kSearch("search", [](const Arguments& arguments) {
  fs::current_path(wexpol::Utf8ToWide(arguments[0]));
  CPolicyDB db(kAccessCode, kReadWrite, 100);
  return AccountOf(db) == std::stoi(arguments[1]) ? 0 : 1;
});

class SearchTest : public ::testing::Test {
 protected:
  TestEnvironment environment_;
};

TEST_F(SearchTest, TheFirstFileThatOpensIsTaken) {
  // Where a file lies: beside the program, in the current folder, installed, as the backup. A file
  // that cannot be opened is passed over: 'd' stands for a folder of that name.
  const std::pair<const char*, int> kCases[] = {
      {"----", 0}, {"1---", 1}, {"-2--", 2}, {"--3-", 3}, {"---4", 4}, {"1234", 1},
      {"-234", 2}, {"--34", 3}, {"d2--", 2}, {"dd3-", 3}, {"d--4", 4}, {"-d--", 0},
  };
  const fs::path root(environment_.folder());
  const fs::path program = root / "program" / fs::path(wexpol::ExecutablePath()).filename();
  const fs::path places[] = {root / "program/wexpol.db", root / "current/wexpol.db",
                             root / "wexpol.db", root / "wexpol.bak"};
  fs::create_directory(root / "program");
  fs::create_directory(root / "current");
  fs::copy_file(wexpol::ExecutablePath(), program);
  for (int place = 0; place < 4; ++place) {
    Provision((root / std::to_string(place)).wstring(), place + 1);
  }
  for (const auto& [files, found] : kCases) {
    for (int place = 0; place < 4; ++place) {
      if (files[place] == 'd') fs::create_directory(places[place]);
      if (files[place] > '0' && files[place] < '5') {
        fs::copy_file(root / std::to_string(place), places[place]);
      }
    }
    WriteBytes((root / "wexpol.db-wal").wstring(), files[3] == '4' ? "left over" : "");
    ChildProcess child(environment_.folder(), "search",
                       {(root / "current").string(), std::to_string(found)}, program.wstring());
    EXPECT_TRUE(child.Succeeded()) << files;
    for (const fs::path& place : places) fs::remove(place);
  }
  const std::string log = ReadBytes(CFilePaths::GetLocationLogFile());
  EXPECT_NE(log.find("WexPol > SQLite error: 14 : "), std::string::npos) << log;
}

TEST_F(SearchTest, AWrongAccessCodeThrowsZero) {
  for (const char* code : {"", "60719", "6071", "607180", " 60718", (const char*)nullptr}) {
    const auto thrown = [](auto&& open) {
      try {
        open();
      } catch (int value) {
        return value;
      }
      return -1;
    };
    EXPECT_EQ(thrown([&] { CPolicyDB(code, kReadWrite, 0); }), 0);
    EXPECT_EQ(thrown([&] { CPolicyDB(code, L"x", kReadWrite, 0); }), 0);
  }
}

class SessionTest : public PolicyTest {
 protected:
  void SetUp() override { ASSERT_TRUE(db().ClearAndAddAccounts("{\"id\": 5, \"locale_id\": 1}")); }
};

TEST_F(SessionTest, OpenAnswersTheEnginesCode) {
  CPolicyDB other(kAccessCode, L"", kReadWrite, 0);
  EXPECT_FALSE(other.IsValidDB());
  const std::wstring missing = environment().PathOf(L"missing.db"), longest(260, L'x');
  for (const wchar_t* path : {(const wchar_t*)nullptr, L"", longest.c_str(), L"\xD800"}) {
    EXPECT_EQ(other.OpenDB(path, kReadWrite | SQLITE_OPEN_CREATE, 0), SQLITE_CANTOPEN);
  }
  EXPECT_EQ(other.OpenDB(missing.c_str(), kReadWrite, 0), SQLITE_CANTOPEN);
  EXPECT_FALSE(other.IsValidDB());
  EXPECT_EQ(other.OpenDB(path().c_str(), SQLITE_OPEN_READONLY, -5), SQLITE_OK);
  EXPECT_FALSE(other.ClearLogins());
  for (int i = 0; i < 2; ++i) other.CloseDB();
  EXPECT_EQ(other.OpenDB(L":memory:", kReadWrite, 0), SQLITE_OK);
  other.CloseDB();
  EXPECT_FALSE(other.IsValidDB());
  const std::wstring unicode = environment().PathOf(L"R\u00E4ume \u0416.db");
  Provision(unicode, 6);
  ASSERT_EQ(other.OpenDB(unicode.c_str(), kReadWrite, 0), SQLITE_OK);
  EXPECT_EQ(AccountOf(other), 6);
}

TEST_F(SessionTest, CopiesShareOneConnection) {
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
  const std::pair<int, bool> kSteps[] = {{1, false}, {2, false}, {3, false}, {0, true}, {0, false},
                                         {1, true},  {0, true},  {2, true},  {2, false}};
  for (const auto& [step, done] : kSteps) {
    EXPECT_EQ(db().Transaction(static_cast<TRANSACTION>(step)), done) << step;
  }
  EXPECT_TRUE(db().Transaction(TRANSACTION_BEGIN));
  EXPECT_TRUE(db().AddLogins("{\"id\": 1}"));
  EXPECT_EQ(Row("SELECT count(*) FROM logins"), "0");
  EXPECT_TRUE(db().Transaction(TRANSACTION_COMMIT));
  EXPECT_EQ(Row("SELECT count(*) FROM logins"), "1");
  EXPECT_EQ(db().GetError(), "");
}

TEST_F(SessionTest, AFileWithoutItsTablesIsNotProvisioned) {
  EXPECT_TRUE(db().IsProvisioned());
  for (const char* lost : {"DROP TABLE alerts_sent", "DROP VIEW remote_control_settings",
                           "ALTER TABLE accounts RENAME id TO number"}) {
    SqlOn(wexpol::HandleOf(db()), std::string("BEGIN;") + lost);
    EXPECT_FALSE(db().IsProvisioned()) << lost;
    SqlOn(wexpol::HandleOf(db()), "ROLLBACK");
  }
  CloseAll();
  WriteBytes(path(), "");
  CPolicyDB empty = Open();
  EXPECT_TRUE(empty.CheckIntegrity());
  EXPECT_FALSE(empty.IsProvisioned());
}

TEST_F(SessionTest, AChangedPageIsRefused) {
  Sql("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<400) "
      "INSERT INTO devices(id) SELECT i FROM n");
  EXPECT_TRUE(db().CheckIntegrity());
  CloseAll();
  const std::string sound = ReadBytes(path());
  EXPECT_EQ(sound.find("devices"), std::string::npos);  // Nothing lies there in clear.
  const auto intact = [&](const std::string& bytes) {
    WriteBytes(path(), bytes);
    return Open().CheckIntegrity();
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

constexpr int kOld = 5, kBackup = 9;
constexpr wchar_t kRestored[] = L"Global\\Restored";

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
  void SetUp() override {
    Provision(backup_, kBackup);
    EXPECT_TRUE(db().ClearAndAddAccounts(R"({"id": 5, "locale_id": 1})"));
  }

  const std::wstring backup_ = CFilePaths::GetLocationBackupDB();
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
  std::vector<std::string> contents = {"no database at all"};
  for (const std::size_t at : {100u, 4096u * 3 + 50, 4096u * 20 + 50}) {
    contents.push_back(sound);
    contents.back().at(at) ^= 1;
  }
  for (const std::string& damaged : contents) {
    WriteBytes(path(), damaged);
    WriteBytes(path() + L"-wal", "left over");
    CPolicyDB db = Open();
    EXPECT_FALSE(db.CheckIntegrity());
    EXPECT_TRUE(db.RestoreDB());
    EXPECT_EQ(AccountOf(db), kBackup);
    EXPECT_TRUE(db.CheckIntegrity());
  }
}

TEST_F(RestoreTest, WithoutABackupItOnlyOpens) {
  wexpol::RemoveFile(backup_);
  EXPECT_TRUE(db().RestoreDB());
  EXPECT_EQ(AccountOf(db()), kOld);
  CloseAll();
  wexpol::RemoveFile(path());
  EXPECT_FALSE(db().RestoreDB());
  EXPECT_FALSE(db().IsValidDB());
}

TEST_F(RestoreTest, WhatCannotBeRestoredIsAsItWas) {
  WriteBytes(backup_, "no database at all");
  EXPECT_TRUE(db().RestoreDB());
  EXPECT_EQ(AccountOf(db()), kOld) << "the backup is damaged";
  EXPECT_TRUE(db().CheckIntegrity());
  Sql("BEGIN IMMEDIATE");
  CPolicyDB other = Open(0);
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
  EXPECT_EQ(wexpol::FileSize(log), 0u) << "it stays at the close, emptied";
  const std::string before = ReadBytes(path());
  look();
  EXPECT_TRUE(wexpol::RemoveFile(log));
  EXPECT_TRUE(wexpol::RemoveFile(index));
  look();
  EXPECT_FALSE(wexpol::FileExists(path() + L"-*")) << "a lone copy stays alone";
  EXPECT_EQ(ReadBytes(path()), before);
}

class DiskFaultTest : public PolicyTest {
 protected:
  // Adds 300 logins with room for one more page each time, until all of them fit; `check` gets
  // whether they did, and how many logins whoever opens the file next finds.
  template <typename Add, typename Check>
  void FillUp(Add&& add, Check&& check) {
    std::string many = "[{\"id\": 1}";
    for (int i = 2; i <= 300; ++i) many += ",{\"id\": " + std::to_string(i) + "}";
    many += "]";
    bool done = false;
    int rounds = 0;
    for (int pages = std::stoi(Row("PRAGMA page_count")); !done; ++pages, ++rounds) {
      CPolicyDB db = Open();
      SqlOn(wexpol::HandleOf(db), "PRAGMA max_page_count = " + std::to_string(pages));
      done = add(db, many.c_str());
      db.CloseDB();
      EXPECT_TRUE(Open().CheckIntegrity());
      check(done, Rows("SELECT id FROM logins").size());
      Sql("DELETE FROM logins; VACUUM");
    }
    EXPECT_GE(rounds, 3);
  }
};

TEST_F(DiskFaultTest, ATransactionIsStoredWholeOrNotAtAll) {
  FillUp(
      [](CPolicyDB& db, const char* json) {
        return db.Transaction(TRANSACTION_BEGIN) && db.AddLogins(json) &&
               db.Transaction(TRANSACTION_COMMIT);
      },
      [](bool done, std::size_t stored) { EXPECT_EQ(stored, done ? 300u : 0u); });
}

TEST_F(DiskFaultTest, WithoutATransactionTheRecordsBeforeTheFaultStay) {
  std::size_t last = 0;
  FillUp(
      [](CPolicyDB& db, const char* json) {
        const bool done = db.AddLogins(json);
        EXPECT_EQ(db.GetError(), done ? "" : R"({"code": 13,"desc": "database or disk is full"})");
        return done;
      },
      [&last](bool done, std::size_t stored) {
        EXPECT_GE(stored, last);
        EXPECT_GT(stored, 0u);
        EXPECT_EQ(stored == 300, done);
        last = stored;
      });
}

}  // namespace

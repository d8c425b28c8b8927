// The session: search, open, copy, restore, integrity, transactions.

#include <filesystem>
#include <functional>

#include "tests/support/child_process.h"
#include "tests/support/policy_test.h"
#include "tools/provision/provision.h"
#include "wexpol/platform/device_info.h"
#include "wexpol/platform/file_paths.h"
#include "wexpol/platform/files.h"
#include "wexpol/platform/text.h"
#include "wexpol/policydb/connection.h"

namespace {

namespace fs = std::filesystem;

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

// Succeeds when the search from the folder opens the file of that account; none is 0.
const ChildFunction kSearch("search", [](const Arguments& arguments) {
  fs::current_path(wexpol::Utf8ToWide(arguments[0]));
  CPolicyDB db(kAccessCode, kReadWrite, 100);
  return (db.IsValidDB() ? AccountOf(db) : 0) == std::stoi(arguments[1]) ? 0 : 1;
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

  static bool Execute(CPolicyDB& session, const char* sql) {
    return sqlite3_exec(wexpol::HandleOf(session), sql, nullptr, nullptr, nullptr) == SQLITE_OK;
  }
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

TEST_F(SessionTest, RestorePutsTheBackupInPlace) {
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
  for (const char* lost : {"DROP TABLE alerts_sent", "DROP VIEW remote_control_settings",
                           "ALTER TABLE accounts RENAME id TO number"}) {
    ASSERT_TRUE(Execute(db(), "BEGIN")) << lost;
    ASSERT_TRUE(Execute(db(), lost)) << lost;
    EXPECT_FALSE(db().IsProvisioned()) << lost;
    ASSERT_TRUE(Execute(db(), "ROLLBACK")) << lost;
  }
  CloseAll();
  WriteBytes(path(), "");
  CPolicyDB empty(kAccessCode, path().c_str(), kReadWrite, 100);
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
    return CPolicyDB(kAccessCode, path().c_str(), kReadWrite, 100).CheckIntegrity();
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

// Speed, told by counting what the engine is asked to do.
class EffortTest : public PolicyTest {
 protected:
  EffortTest() {
    CDeviceInfo::WriteDeviceID(1L);
    Sql("INSERT INTO accounts VALUES(1,1033,1,1); INSERT INTO policies(id) VALUES(2);"
        "INSERT INTO devices(id,account_id,policy_id,token,device_group_id,time_zone_id) "
        "VALUES(1,1,2,'t',1,0); INSERT INTO device_groups(id) VALUES(1);"
        "INSERT INTO logins(id,device_id,name,policy_id) VALUES(1,1,'n',2);"
        "INSERT INTO app_files VALUES(1,1,'known.exe')");
  }

  // Of what is prepared from now on, the engine asks whether it may.
  void Count(CPolicyDB& session) {
    sqlite3_set_authorizer(
        wexpol::HandleOf(session),
        [](void* asked, int, const char*, const char*, const char*, const char*) {
          return ++*static_cast<int*>(asked), SQLITE_OK;
        },
        &asked_);
  }
  int asked_ = 0;
};

TEST_F(EffortTest, AnIdleStatementIsFoundAgain) {
  // Set once: it makes the engine prepare anew all that it had.
  Count(db());
  const auto questions = [this] {
    CDevice device;
    CAppControlInfo info;
    RecordList<CLogin> logins;
    std::string text;
    EXPECT_TRUE(db().GetThisDevice(device));
    EXPECT_FALSE(db().IsServiceInstalled(1));
    EXPECT_FALSE(db().GetServiceConfiguration(text, "url", 1));
    EXPECT_FALSE(db().IsAppControlled(info, "known.exe", nullptr, 0));
    EXPECT_TRUE(db().GetLogins(logins.list, "device_id", 1));
  };
  questions();
  EXPECT_GT(std::exchange(asked_, 0), 10);
  questions();
  EXPECT_EQ(asked_, 0);
}

TEST_F(EffortTest, AnInsertIsPreparedOnceForAWholeDocument) {
  std::string many = "[{\"id\": 1}";
  for (int i = 2; i <= 500; ++i) many += ",{\"id\": " + std::to_string(i) + "}";
  many += "]";
  for (const auto add : {&CPolicyDB::AddNics, &CPolicyDB::AddPolicyServices}) {
    CPolicyDB session(kAccessCode, path().c_str(), kReadWrite, 100);
    Count(session);
    asked_ = 0;
    EXPECT_TRUE((session.*add)(many.c_str()));
    EXPECT_LE(asked_, 60);
  }
}

// A read that begins while none is open locks the file, checks its header and decrypts it.
TEST_F(EffortTest, AQuestionIsOneRead) {
  static int reads;
  sqlite3* const engine = wexpol::HandleOf(db());
  const auto on_statement = [](unsigned, void* db, void* statement, void*) {
    const bool reads_rows = sqlite3_column_count(static_cast<sqlite3_stmt*>(statement)) > 0;
    reads += reads_rows && sqlite3_txn_state(static_cast<sqlite3*>(db), nullptr) == SQLITE_TXN_NONE;
    return 0;
  };
  sqlite3_trace_v2(engine, SQLITE_TRACE_STMT, on_statement, engine);
  CDevice device, self;
  CAuthInfo info;
  CAppControlInfo program;
  CInstallInvite invite;
  CRemoteControlSetting setting;
  CDeviceBackupDetail detail;
  std::string text;
  std::wstring name;
  std::set<short> services;
  std::set<std::string> servers;
  std::map<long, long> timers;
  TIME_ZONE_INFORMATION zone;
  const std::function<void()> questions[] = {
      [&] { db().GetThisDevice(device); },
      [&] { db().GetDevice(&device, 1); },
      [&] { db().GetDeviceToken(text); },
      [&] { db().GetMasterAgentForThisLAN(device, self); },
      [&] { db().IsDeviceDetectionEnabled(); },
      [&] { db().GetDeviceGroupName(name); },
      [&] { db().GetLoginId(L"n"); },
      [&] { db().CheckLoginDetails(L"n", "x"); },
      [&] { db().GetPolicyId(L"other"); },
      [&] { db().GetServicesMarkedForAutoUpgrade(services); },
      [&] { db().IsServiceInstallNeeded(1, -1); },
      [&] { db().IsServiceInstalledAndEnabled(1); },
      [&] { db().IsServiceEnabled(1, true); },
      [&] {
        db().AnyMoviesAndTvCategories({L"a", L"b"});
      },
      [&] { db().IsAppControlled(program, "known.exe", nullptr, 0); },
      [&] { db().IsAppMonitored(program, "known.exe", nullptr, 0); },
      [&] { db().GetRemoteControlSetting(&setting); },
      [&] { db().IsVncConnectionAllowed(); },
      [&] { db().GetDeviceBackupDetails(&detail, 1); },
      [&] { db().IsOnlineBackupAllowed(nullptr); },
      [&] { db().GetTimeInfo(&zone, servers); },
      [&] { db().GetAlertCheckTimerValues(timers, nullptr, 0, nullptr); },
      [&] { db().IsProvisioned(), db().GetLogin(*std::make_unique<CLogin>(), 1); },
  };
  for (std::size_t i = 0; i < std::size(questions); ++i) {
    reads = 0;
    questions[i]();
    EXPECT_EQ(reads, 1) << i;
  }
  sqlite3_trace_v2(engine, 0, nullptr, nullptr);
}

}  // namespace

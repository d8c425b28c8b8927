// Application control: its tables, the decisions, and what they learn.

#include "tests/support/policy_test.h"
#include "tools/provision/provision.h"

namespace {

const unsigned char* Bytes(const std::string& text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

// What a lookup found; the digests here are sixteen times one letter.
std::string Found(bool answer, const CAppControlInfo& info) {
  std::string found = answer ? "yes" : "no";
  for (const int value : {info.app_control_id, info.app_control_app_id, int{info.app_id},
                          static_cast<int>(info.control_flag)}) {
    found += ' ' + std::to_string(value);
  }
  if (info.app_name) found += ' ' + wexpol::WideToUtf8(info.app_name.get());
  return found;
}

class AppControlTest : public PolicyTest {
 protected:
  // Login 1 has policy 70, whose rule set 10 blocks program 1; another that names 2 is off.
  AppControlTest() {
    Sql("INSERT INTO policy_services(id,policy_id) VALUES(5,70),(6,80);"
        "INSERT INTO logins(id,policy_id) VALUES(1,70),(2,80),(3,NULL)");
    EXPECT_TRUE(db().ClearAndAddApps(R"({"apps":[{"id":1,"app_type_id":1,"name":"Spiel"},
        {"id":2,"app_type_id":1,"name":"Tür & Tor"},{"id":3,"app_type_id":2,"name":"Other"},
        {"id":4,"app_type_id":1,"name":""}]})"));
    EXPECT_TRUE(db().ClearAndAddAppFiles(R"([{"id":1,"app_id":1,"name":"block.exe"},
        {"id":2,"app_id":2,"name":"watch.exe"},{"id":3,"app_id":3,"name":"other.exe"},
        {"id":4,"app_id":4,"name":"empty.exe"},{"id":5,"app_id":1,"name":null}])"));
    EXPECT_TRUE(db().AddAppControls(R"({"app_control":[{"id":10,"policy_service_id":5},
        {"id":11,"policy_service_id":5,"enabled":false},{"id":12,"policy_service_id":6}]})"));
    EXPECT_TRUE(db().AddAppControlApps(R"([{"id":100,"app_id":1,"app_control_id":10},
        {"id":101,"app_id":2,"app_control_id":11}])"));
  }

  // A name that is a program's, too.
  void Name(int app, const std::string& name) {
    CAppFile file;
    file.app_id = static_cast<std::int16_t>(app);
    file.name = name.c_str();
    EXPECT_EQ(file.Add2DB(handle()), SQLITE_DONE);
  }

  bool Ask(CAppControlInfo& info, int login, const char* name, char digest) {
    info.login_id = login;
    return db().IsAppControlled(info, name, Bytes(std::string(16, digest)), 16);
  }
  std::string Ask(int login, const char* name, char digest) {
    CAppControlInfo info;
    const bool answer = Ask(info, login, name, digest);
    return Found(answer, info);
  }
  std::vector<std::string> Learnt() {
    return Rows("SELECT app_id,control_flag,CAST(md5 AS TEXT) FROM app_checksums ORDER BY id");
  }
};

std::string Digest(int app, int flag, char digest) {
  return std::to_string(app) + '|' + std::to_string(flag) + '|' + std::string(16, digest);
}

using Lines = std::vector<std::string>;

TEST_F(AppControlTest, TablesHoldWhatTheDocumentsSay) {
  EXPECT_EQ(Rows("SELECT * FROM app_controls"), (Lines{"10|5|1|70", "11|5|0|70", "12|6|1|80"}));
  RecordList<CApp> apps;
  EXPECT_TRUE(db().GetApps(apps.list, 1));
  EXPECT_EQ(apps.list.size(), 3u);

  CApp app;
  for (const int id : {2, 9}) EXPECT_EQ(app.SpecialGet(handle(), id), id == 2);
  EXPECT_EQ(Json(app), R"({"id": 2,"app_type_id": 1,"name": "Tür & Tor"})");
  for (const int id : {3, 9}) EXPECT_EQ(db().GetApp(app, id), id == 3);
  EXPECT_EQ(app.id, 3);

  for (const int id : {101, 999}) EXPECT_TRUE(db().DeleteAppControlAppFromDB(id));
  EXPECT_EQ(Rows("SELECT id FROM app_control_apps"), Lines{"100"});
}

TEST_F(AppControlTest, AChecksumIsNeverAddedAsARecord) {
  const std::string digits = "00ff10203040506070809aAbBcCdDeEf";
  CAppChecksum checksum;
  EXPECT_TRUE(ParseText(checksum, R"({"id":1,"app_id":2,"md5":")" + digits + "\"}"));
  EXPECT_EQ(Json(checksum), R"({"id": 1,"app_id": 2,"md5": "00ff10203040506070809aabbccddeef",)"
                            R"("control_flag": 0})");
  EXPECT_EQ(checksum.Add2DB(handle()), SQLITE_RANGE);
  EXPECT_EQ(Learnt(), Lines{});

  Sql("INSERT INTO app_checksums VALUES(1,7,NULL,1)");
  checksum.app_id = -1;
  checksum.control_flag = -1;
  EXPECT_EQ(checksum.UpdateDB(handle()), SQLITE_DONE);
  EXPECT_EQ(Row("SELECT * FROM app_checksums"), "1|7|00ff10203040506070809aabbccddeef|NULL");
}

TEST_F(AppControlTest, TheFirstMatchDecides) {
  Sql("INSERT INTO app_checksums(app_id,control_flag,md5) SELECT column1,column2,"
      "CAST(replace(hex(zeroblob(8)),'0',column3) AS BLOB) FROM "
      "(VALUES(1,1,'b'),(1,2,'p'),(2,2,'m'),(3,2,'o'),(4,2,'n'))");
  const std::tuple<int, char, const char*, const char*> kCases[] = {
      {1, 'u', "unknown.exe", "no -1 -1 -1 0"},
      {1, 'b', "block.exe", "yes 10 100 1 1"},
      {1, 'u', "Block.exe", "no -1 -1 -1 0"},   // Names differ by case.
      {1, 'm', "block.exe", "yes 10 100 1 1"},  // The name before the digest.
      {1, 'b', "watch.exe", "yes 10 100 1 1"},  // Blocking before monitoring.
      {1, 'b', "copy.exe", "yes 10 100 1 1"},   // By its digest.
      {1, 'b', nullptr, "yes 10 100 1 1"},
      {1, 'm', "watch.exe", "yes 0 0 2 2 Tür & Tor"},
      {1, 'm', "copy.exe", "yes 0 0 2 2 Tür & Tor"},
      {1, 'p', "copy.exe", "yes 0 0 1 2 Spiel"},   // Learnt as monitored, so not blocked.
      {1, 'n', "empty.exe", "yes 0 0 4 2"},        // Without a name.
      {1, 'o', "other.exe", "no -1 -1 -1 0"},      // Known, but of another type.
      {2, 'm', "block.exe", "yes 0 0 1 2 Spiel"},  // No rule set of its policy names it.
      {2, 'b', "copy.exe", "no -1 -1 -1 0"},       // Learnt as blocked, not as monitored.
      {3, 'm', "block.exe", "yes 0 0 1 2 Spiel"},  // No policy.
      {9, 'm', "block.exe", "yes 0 0 1 2 Spiel"},  // No such login.
  };
  for (const auto& [login, digest, name, found] : kCases) {
    EXPECT_EQ(Ask(login, name, digest), found) << login << (name ? name : "") << digest;
  }
  EXPECT_EQ(Learnt().size(), 5u);

  CAppControlInfo info;
  info.policy_id = 70;
  const std::string digest(16, 'm');
  EXPECT_FALSE(info.IsAppControlled(handle(), "watch.exe", Bytes(digest), 16, false));
  EXPECT_TRUE(info.IsAppControlled(handle(), "watch.exe", Bytes(digest), 16, true));
  Sql("UPDATE app_controls SET enabled=0");
  EXPECT_EQ(Ask(1, "block.exe", 'b'), "yes 0 0 1 2 Spiel");
}

TEST_F(AppControlTest, ANameTeachesItsDigestOnce) {
  EXPECT_EQ(Ask(1, "block.exe", 'x'), "yes 10 100 1 1");
  EXPECT_EQ(Ask(1, "copy.exe", 'x'), "yes 10 100 1 1");
  EXPECT_EQ(Ask(2, "block.exe", 'x'), "yes 0 0 1 2 Spiel");  // Monitored; known as blocked.
  EXPECT_EQ(Ask(1, "watch.exe", 'y'), "yes 0 0 2 2 Tür & Tor");
  const std::string known(16, 'y'), added(16, 'z');
  EXPECT_TRUE(db().AddAppChecksumToDB(Bytes(known), 16, 1));
  EXPECT_TRUE(db().AddAppChecksumToDB(Bytes(added), 16, 2));
  const Lines learnt = {Digest(1, 1, 'x'), Digest(2, 2, 'y'), Digest(0, 2, 'z')};
  EXPECT_EQ(Learnt(), learnt);

  // A digest that is none is no digest of anything, and is learnt each time.
  CAppControlInfo info;
  info.login_id = 1;
  EXPECT_FALSE(db().IsAppControlled(info, "copy.exe", nullptr, 16));
  EXPECT_TRUE(db().IsAppControlled(info, "block.exe", Bytes(known), 0));
  EXPECT_TRUE(db().IsAppControlled(info, "block.exe", nullptr, 16));
  EXPECT_TRUE(db().AddAppChecksumToDB(Bytes(known), -1, -1));
  EXPECT_EQ(Rows("SELECT app_id,md5,control_flag FROM app_checksums WHERE md5 IS NULL"),
            (Lines{"1|NULL|1", "1|NULL|1", "0|NULL|NULL"}));

  EXPECT_TRUE(db().Transaction(TRANSACTION_BEGIN));
  EXPECT_EQ(Ask(1, "block.exe", 't'), "yes 10 100 1 1");
  EXPECT_TRUE(db().Transaction(TRANSACTION_ROLLBACK));
  EXPECT_EQ(Ask(1, "copy.exe", 't'), "no -1 -1 -1 0");
}

TEST_F(AppControlTest, WhatAnotherProcessLearntMeanwhileIsNotLearntAgain) {
  static sqlite3* other;
  other = wexpol::OpenKeyed(path(), kReadWrite);
  const auto exec = [](const char* sql) {
    return sqlite3_exec(other, sql, nullptr, nullptr, nullptr);
  };
  ASSERT_EQ(exec("BEGIN IMMEDIATE; INSERT INTO app_checksums(app_id,md5,control_flag) "
                 "VALUES(2,CAST('xxxxxxxxxxxxxxxx' AS BLOB),2)"),
            SQLITE_OK);
  // Who waits for the writer lets it finish.
  sqlite3_busy_handler(
      handle(),
      [](void*, int) { return sqlite3_exec(other, "COMMIT", nullptr, nullptr, nullptr) ? 0 : 1; },
      nullptr);
  CAppControlInfo info;
  info.policy_id = 70;
  const std::string digest(16, 'x');
  EXPECT_TRUE(info.IsAppControlled(handle(), "block.exe", Bytes(digest), 16, true));
  EXPECT_EQ(Learnt(), Lines{Digest(2, 2, 'x')});

  // The answer does not depend on what can be learnt.
  ASSERT_EQ(exec("BEGIN IMMEDIATE"), SQLITE_OK);
  sqlite3_busy_timeout(handle(), 0);
  EXPECT_TRUE(info.IsAppControlled(handle(), "block.exe", Bytes(std::string(16, 'y')), 16, true));
  EXPECT_EQ(sqlite3_close(other), SQLITE_OK);
  EXPECT_EQ(Learnt().size(), 1u);
}

// Counts how often the engine waits, and lets it go on at once.
class CountedSleeps {
 public:
  CountedSleeps() {
    count_ = 0;
    vfs_->xSleep = [](sqlite3_vfs*, int microseconds) { return ++count_, microseconds; };
  }
  ~CountedSleeps() { vfs_->xSleep = sleep_; }
  int TakeCount() { return std::exchange(count_, 0); }

 private:
  static inline int count_;
  sqlite3_vfs* vfs_ = sqlite3_vfs_find(nullptr);
  decltype(sqlite3_vfs::xSleep) sleep_ = vfs_->xSleep;
};

TEST_F(AppControlTest, LearningNeverWaitsForAnotherProcess) {
  CPolicyDB session(kAccessCode, path().c_str(), kReadWrite, 5000);
  sqlite3* host = wexpol::OpenKeyed(path(), kReadWrite);
  sqlite3_busy_timeout(host, 50);
  const std::string digest(16, 'x');
  CAppControlInfo info;
  info.login_id = 1;
  CountedSleeps sleeps;
  Sql("BEGIN IMMEDIATE");
  EXPECT_TRUE(session.IsAppControlled(info, "block.exe", Bytes(digest), 16));
  EXPECT_TRUE(session.IsAppMonitored(info, "watch.exe", Bytes(digest), 16));
  EXPECT_EQ(sleeps.TakeCount(), 0);
  // What is added by itself waits, and so does a handle of the host's.
  EXPECT_FALSE(session.AddAppChecksumToDB(Bytes(digest), 16, 1));
  EXPECT_GT(sleeps.TakeCount(), 0);
  EXPECT_TRUE(info.IsAppControlled(host, "block.exe", Bytes(digest), 16, true));
  EXPECT_GT(sleeps.TakeCount(), 0);
  EXPECT_EQ(sqlite3_close(host), SQLITE_OK);
  Sql("COMMIT");
  EXPECT_EQ(Learnt(), Lines{});
  EXPECT_TRUE(session.IsAppControlled(info, "block.exe", Bytes(digest), 16));
  EXPECT_EQ(Learnt(), Lines{Digest(1, 1, 'x')});
}

TEST_F(AppControlTest, MonitoringAloneNeedsAResolvedPolicy) {
  const std::string digest(16, 'w');
  CAppControlInfo info;
  info.login_id = 2;
  EXPECT_FALSE(db().IsAppMonitored(info, "watch.exe", Bytes(digest), 16));
  EXPECT_FALSE(Ask(info, 2, "unknown.exe", 'u'));
  EXPECT_EQ(info.policy_id, 80);
  EXPECT_TRUE(db().IsAppMonitored(info, "watch.exe", Bytes(digest), 16));
  EXPECT_EQ(Found(true, info), "yes 0 0 2 2 Tür & Tor");
  EXPECT_EQ(Learnt(), Lines{Digest(2, 2, 'w')});
  EXPECT_TRUE(db().IsAppMonitored(info, "copy.exe", Bytes(digest), 16));
  EXPECT_FALSE(db().IsAppMonitored(info, "unknown.exe", Bytes(std::string(16, 'u')), 16));
  EXPECT_EQ(info.control_flag, CONTROL_FLAG_NONE);
  db().CloseDB();
  EXPECT_FALSE(db().IsAppMonitored(info, "watch.exe", Bytes(digest), 16));
  EXPECT_EQ(Ask(1, "block.exe", 'b'), "no -1 -1 -1 0");
}

TEST_F(AppControlTest, NamesAreNothingButNames) {
  const std::pair<std::string, bool> kCases[] = {
      // Whether it may be monitored by name: not with a quote, and not when it is too long.
      {"x'; DELETE FROM apps; --", false},
      {"' OR '1'='1", false},
      {std::string(1000, '%'), false},
      {std::string(895, 'n'), false},
      {std::string(894, 'n'), true},
      {"\xFF\xC3(\x80.exe", true},
      {std::string("nul.exe\0hidden", 14), true},
  };
  const char* counts = "SELECT count(*),(SELECT count(*) FROM apps) FROM logins";
  for (const auto& [name, monitored] : kCases) {
    EXPECT_EQ(Ask(1, name.c_str(), 'q'), "no -1 -1 -1 0") << name;
    Name(1, name);
    EXPECT_EQ(Ask(1, name.c_str(), 'q'), "yes 10 100 1 1") << name;
    EXPECT_EQ(Learnt(), Lines{Digest(1, 1, 'q')});
    Sql("DELETE FROM app_checksums; UPDATE app_files SET app_id=2 WHERE id IS NULL");
    EXPECT_EQ(Ask(1, name.c_str(), 'q'), monitored ? "yes 0 0 2 2 Tür & Tor" : "no -1 -1 -1 0");
    Sql("DELETE FROM app_checksums; DELETE FROM app_files WHERE id IS NULL");
    EXPECT_EQ(Row(counts), "3|4");
  }
}

TEST_F(AppControlTest, LookupObjectsShareANameUntilOneGivesItAway) {
  CAppControlInfo info, fresh;
  EXPECT_TRUE(Ask(info, 1, "watch.exe", 'w'));
  APP_CONTROL_INFO plain;
  plain = info;
  fresh = plain;
  const wchar_t* name = info.app_name;
  EXPECT_EQ(fresh.app_name, name);
  EXPECT_TRUE(Ask(info, 2, "block.exe", 'b'));  // Another name; theirs stays.
  EXPECT_EQ(std::wstring(plain.app_name), L"T\u00FCr & Tor");
  EXPECT_FALSE(Ask(info, 1, "unknown.exe", 'u'));
  EXPECT_EQ(info.control_flag, CONTROL_FLAG_NONE);
  info.Reset(true);
  EXPECT_EQ(Found(info.policy_resolved, info) + std::to_string(info.login_id), "no -1 -1 -1 0-1");
  fresh.Reset(false);
  EXPECT_EQ(fresh.app_name, nullptr);
  delete[] name;  // Ours now, and no longer theirs.
}

}  // namespace

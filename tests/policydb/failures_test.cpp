// What failures below the library come to: the answers, the error objects and what is left.

#include <cstring>
#include <filesystem>

#include "tests/support/child_process.h"
#include "tests/support/policy_test.h"
#include "wexpol/platform/shared_memory.h"
#include "wexpol/platform/text.h"
#include "wexpol/policydb/connection.h"

#ifndef _WIN32
#include <sys/mount.h>
#endif

namespace {

class FailuresTest : public PolicyTest {};

TEST_F(FailuresTest, AValueThatCannotBeBoundKeepsItsMessage) {
  sqlite3_limit(wexpol::HandleOf(db()), SQLITE_LIMIT_LENGTH, 1000);
  const std::string document = R"([{"id": 1, "name": ")" + std::string(1001, 'x') + "\"}]";
  EXPECT_FALSE(db().AddLogins(document.c_str()));
  EXPECT_EQ(db().GetError(), R"({"code": 18,"desc": "string or blob too big"})");
}

// Denies a function, or deleting from a table, by its name.
int Deny(void* name, int action, const char* table, const char* function, const char*,
         const char*) {
  const char* used = action == SQLITE_FUNCTION ? function : action == SQLITE_DELETE ? table : "";
  return std::strcmp(used, static_cast<const char*>(name)) == 0 ? SQLITE_DENY : SQLITE_OK;
}

TEST_F(FailuresTest, AnOccurrenceThatCannotBeCountedOrCondensedStays) {
  CAlertEventType type;
  ASSERT_TRUE(ParseText(type, R"({"id": 1, "alert_id": 1, "threshold": 1, "threshold_unit_id": 1,
                                  "time_window": 5})"));
  int buffered = 0;
  for (const char* denied : {"count", "max", "alert_logs"}) {
    sqlite3_set_authorizer(handle(), Deny, const_cast<char*>(denied));
    EXPECT_EQ(CAlertLogBuffer::AddAlertLogBuffer(handle(), &type, "x"), -1) << denied;
    sqlite3_set_authorizer(handle(), nullptr, nullptr);
    EXPECT_EQ(Row("SELECT count(*) FROM alert_logs_buffer"), std::to_string(++buffered)) << denied;
  }
  EXPECT_EQ(CAlertLogBuffer::AddAlertLogBuffer(handle(), &type, "x"), 1);
  EXPECT_EQ(Row("SELECT count(*) FROM alert_logs"), "1");
}

TEST_F(FailuresTest, TimersThatCannotBeStartedAreTold) {
  Sql("INSERT INTO alert_event_types(id, enabled, suppression_duration) VALUES(1, 1, 2)");
  std::map<long, long> timers;
  CPolicyDB reader(kAccessCode, path().c_str(), SQLITE_OPEN_READONLY, 0);
  EXPECT_TRUE(reader.GetAlertCheckTimerValues(timers, nullptr, 0, nullptr)) << "may only read";
  EXPECT_EQ(timers, (std::map<long, long>{{1, 120}}));
  Sql("CREATE TRIGGER refuse BEFORE INSERT ON alert_checks BEGIN SELECT RAISE(FAIL, 'no'); END");
  EXPECT_FALSE(db().GetAlertCheckTimerValues(timers, nullptr, 0, nullptr));
  EXPECT_EQ(db().GetError(), R"({"code": 19,"desc": "constraint failed"})");
}

#ifndef _WIN32
// On a disk without a free page a block is refused, or else may be written to.
int UseABlock(const Arguments&) {
  const wexpol::NamedMapping block(L"Global\\Corvane Full", 168);
  if (block.data()) std::memset(block.data(), 1, 168);
  return block.data() ? 2 : 0;
}
const ChildFunction kUseABlock("use_a_block", UseABlock);

TEST(FullDisk, ABlockOfSharedMemoryIsRefused) {
  TestEnvironment environment;
  const std::wstring disk = environment.PathOf(L"disk");
  const std::string folder = wexpol::WideToUtf8(disk);
  std::filesystem::create_directory(folder);
  if (::mount("none", folder.c_str(), "tmpfs", 0, "size=4096") != 0) {
    GTEST_SKIP() << "only root can make a small disk";
  }
  EXPECT_FALSE(ChildProcess(disk, "use_a_block").Succeeded()) << "there is room";
  WriteBytes(disk + L"/filler", std::string(4096, 'x'));
  EXPECT_TRUE(ChildProcess(disk, "use_a_block").Succeeded());
  ::umount(folder.c_str());
}
#endif

}  // namespace

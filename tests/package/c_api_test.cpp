// The C interface: what it answers, and arguments that nobody should pass.

#include <wexpol_c.h>

#include <functional>
#include <utility>
#include <vector>

#include "agent_folder.h"

namespace {

class CInterface : public AgentFolder {
 protected:
  CInterface() {
    Provision();
    EXPECT_EQ(wexpol_open(&session_, "60718", nullptr, 0, 2000), SQLITE_OK);
  }
  ~CInterface() override { wexpol_close(session_); }

  wexpol_session* session_ = nullptr;
};

std::string Taken(char* text) {
  const std::string copy = text ? text : "(null)";
  wexpol_free(text);
  return copy;
}

// Operations that take a text, and what they answer to one that names nothing.
struct Call {
  const char* name;
  int failure;
  std::function<int(wexpol_session*, const char*, char**)> call;
};

const Call kCalls[] = {
    {"replace", 1, [](auto* s, auto* t, char**) { return wexpol_replace_table(s, t, t); }},
    {"replace by", 1, [](auto* s, auto* t, char**) { return wexpol_replace_table(s, "nics", t); }},
    {"add", 1, [](auto* s, auto* t, char**) { return wexpol_add_to_table(s, "logins", t); }},
    {"clear", 1, [](auto* s, auto* t, char**) { return wexpol_clear_table(s, t); }},
    {"list", 1, [](auto* s, auto* t, char** o) { return wexpol_list_table(s, t, t, 0, o); }},
    {"hash", 1, [](auto* s, auto* t, char** o) { return wexpol_content_hash(s, t, o); }},
    {"policy", 0, [](auto* s, auto* t, char**) { return int{wexpol_policy_of_login(s, t) > 501}; }},
    {"password", WEXPOL_PASSWORD_INVALID,
     [](auto* s, auto* t, char**) { return s ? wexpol_check_password(s, 501, 1, t) : 1; }},
    {"value", 0, [](auto* s, auto* t, char** o) { return wexpol_get_configuration(s, t, 0, o); }},
    {"category", 0, [](auto* s, auto* t, char**) { return wexpol_has_category(s, 1, t); }},
    {"domain", 0, [](auto* s, auto* t, char**) { return wexpol_is_never_blocked(s, t); }},
    {"program", 0,
     [](auto* s, auto* t, char**) { return wexpol_decide_program(s, t, t, nullptr, nullptr); }},
    {"learn", 1,
     [](auto* s, auto*, char**) { return wexpol_learn_program(s, nullptr, 1) ? 1 : 0; }},
};

TEST_F(CInterface, HostileTextsNameNothing) {
  const std::string deep(100000, '[');
  const std::string longer(1000000, 'x');
  for (const char* text : {static_cast<const char*>(nullptr), "", "\xff\xfe\xc0", "'; DROP TABLE x",
                           "%s%n", "{\"a\":", deep.c_str(), longer.c_str()}) {
    for (const Call& each : kCalls) {
      char* out = nullptr;
      EXPECT_EQ(each.call(session_, text, &out), each.failure) << each.name;
      EXPECT_EQ(Taken(out), "(null)") << each.name;
      each.call(nullptr, text, &out);
      EXPECT_EQ(out, nullptr) << each.name;
    }
  }
  EXPECT_EQ(wexpol_replace_table(nullptr, "nics", "[]"), SQLITE_MISUSE);
  EXPECT_EQ(wexpol_begin(nullptr), SQLITE_MISUSE);
  EXPECT_EQ(wexpol_this_device(nullptr, nullptr), -1);
  EXPECT_STREQ(wexpol_error(nullptr), "");
  wexpol_close(nullptr);
  wexpol_free(nullptr);
}

TEST_F(CInterface, OpeningTellsItsCode) {
  wexpol_session* other = session_;
  EXPECT_EQ(wexpol_open(&other, "0", nullptr, 0, 0), SQLITE_AUTH);
  EXPECT_EQ(other, nullptr);
  EXPECT_EQ(wexpol_open(&other, nullptr, nullptr, 0, 0), SQLITE_AUTH);
  EXPECT_EQ(wexpol_open(nullptr, "60718", nullptr, 0, 0), SQLITE_MISUSE);
  const std::string missing = (folder_ / "none" / "wexpol.db").string();
  EXPECT_EQ(wexpol_open(&other, "60718", missing.c_str(), 0, 0), SQLITE_CANTOPEN);
  EXPECT_EQ(wexpol_begin(other), SQLITE_MISUSE);
  EXPECT_EQ(wexpol_restore(other), SQLITE_OK);
  EXPECT_EQ(wexpol_is_provisioned(other), 1);
  wexpol_close(other);
  EXPECT_EQ(wexpol_open(&other, "60718", nullptr, 1, 0), SQLITE_OK);
  EXPECT_EQ(wexpol_clear_table(other, "nics"), SQLITE_READONLY);
  wexpol_close(other);
}

TEST_F(CInterface, TablesGoThereAndBack) {
  char* rows = nullptr;
  for (const char* table : {"devices", "logins", "app_files", "alert_event_types", "nics"}) {
    ASSERT_EQ(wexpol_list_table(session_, table, nullptr, 0, &rows), SQLITE_OK) << table;
    const std::string before = Taken(rows);
    ASSERT_EQ(wexpol_content_hash(session_, table, &rows), SQLITE_OK) << table;
    const std::string hash = Taken(rows);
    EXPECT_EQ(hash.size(), 40u) << table;
    EXPECT_GT(before.size(), 50u) << table;
    ASSERT_EQ(wexpol_replace_table(session_, table, before.c_str()), SQLITE_OK) << table;
    ASSERT_EQ(wexpol_list_table(session_, table, nullptr, 0, &rows), SQLITE_OK) << table;
    EXPECT_EQ(Taken(rows), before) << table;
    ASSERT_EQ(wexpol_content_hash(session_, table, &rows), SQLITE_OK) << table;
    EXPECT_EQ(Taken(rows), hash) << table;
  }
  ASSERT_EQ(wexpol_list_table(session_, "logins", "id", 9003, &rows), SQLITE_OK);
  EXPECT_EQ(Taken(rows), R"([{"id": 9003,"device_id": 70002,"name": "SYSTEM","is_admin": true}])");
  EXPECT_EQ(wexpol_add_to_table(session_, "logins", R"([{"id": 9003,"name": "x"}])"),
            SQLITE_CONSTRAINT);
  EXPECT_STREQ(wexpol_error(session_),
               R"({"code": 19,"desc": "UNIQUE constraint failed: logins.id"})");
  ASSERT_EQ(wexpol_begin(session_), SQLITE_OK);
  ASSERT_EQ(wexpol_clear_table(session_, "logins"), SQLITE_OK);
  ASSERT_EQ(wexpol_roll_back(session_), SQLITE_OK);
  EXPECT_EQ(wexpol_commit(session_), SQLITE_ERROR);
  ASSERT_EQ(wexpol_list_table(session_, "logins", "id", 9003, &rows), SQLITE_OK);
  EXPECT_GT(Taken(rows).size(), 2u);
}

TEST_F(CInterface, QuestionsAreAnswered) {
  char* text = nullptr;
  EXPECT_EQ(wexpol_this_device(session_, &text), 70001);
  EXPECT_EQ(Taken(text).rfind(R"({"id": 70001,)", 0), 0u);
  EXPECT_EQ(wexpol_credential(session_, 1, 1, &text), 1);
  EXPECT_EQ(Taken(text).rfind("X-Device-Token: ", 0), 0u);
  EXPECT_EQ(wexpol_policy_of_login(session_, "OFFICE\\anna"), 501);
  EXPECT_EQ(wexpol_service_state(session_, 1) & WEXPOL_SERVICE_ACTIVE, WEXPOL_SERVICE_ACTIVE);
  EXPECT_EQ(wexpol_service_state(session_, 999), 0);
  EXPECT_EQ(wexpol_set_configuration(session_, "c_key", 3, "c_value"), SQLITE_OK);
  EXPECT_EQ(wexpol_get_configuration(session_, "c_key", 3, &text), 1);
  EXPECT_EQ(Taken(text), "c_value");
  const unsigned char md5[16] = {7};
  EXPECT_EQ(wexpol_decide_program(session_, "OFFICE\\anna", "patience.exe", md5, &text),
            WEXPOL_PROGRAM_BLOCKED);
  EXPECT_EQ(Taken(text),
            R"({"policy_id": 501,"app_control_id": 41,"app_control_app_id": 1,"app_id": 1})");
  EXPECT_EQ(wexpol_learn_program(session_, md5, WEXPOL_PROGRAM_BLOCKED), SQLITE_OK);
  EXPECT_EQ(wexpol_occurred(session_, 4, nullptr, &text), SQLITE_OK);
  EXPECT_EQ(Taken(text), "[202]");
  EXPECT_EQ(wexpol_alert_sent(session_, 202), SQLITE_OK);
  EXPECT_EQ(wexpol_alert_sent(session_, 0), SQLITE_ERROR);
  EXPECT_EQ(wexpol_check_timers(session_, &text), SQLITE_OK);
  EXPECT_NE(Taken(text).find("\"202\": 1800"), std::string::npos);
  EXPECT_EQ(wexpol_time_information(session_, &text), 1);
  EXPECT_NE(Taken(text).find(R"("servers": [")"), std::string::npos);
  EXPECT_EQ(wexpol_safe_reboot_line(session_, "Neu\xc3\xbc", nullptr, &text), 1);
  EXPECT_NE(Taken(text).find("Neu\xc3\xbc"), std::string::npos);
  EXPECT_STREQ(wexpol_version(), WEXPOL_VERSION);
}

}  // namespace

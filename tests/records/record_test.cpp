// The row operations, and every record class against its golden line and the schema.

#include "tests/support/policy_test.h"
#include "wexpol/catalog/catalog.h"

namespace {

std::string CodecName(const wexpol::Codec* codec) {
  static const std::map<const wexpol::Codec*, const char*> kNames = {
      {wexpol::kInt16.untyped(), "int16"},
      {wexpol::kInt32.untyped(), "int32"},
      {wexpol::kUint32.untyped(), "uint32"},
      {wexpol::kInt64.untyped(), "int64"},
      {wexpol::kUint64NullIsZero.untyped(), "version"},
      {wexpol::kBool.untyped(), "bool"},
      {wexpol::kFlag16.untyped(), "flag16"},
      {wexpol::kStrictBool.untyped(), "strict-bool"},
      {wexpol::kStrictFlag16.untyped(), "strict-flag16"},
      {wexpol::kText.untyped(), "text"},
      {wexpol::kWideText.untyped(), "wide"}};
  const auto name = kNames.find(codec);
  return name == kNames.end() ? "own" : name->second;
}

// All that a class declares, in one line: the names, the columns with their deviations, and an
// empty record as JSON and as a row.
class RecordClassTest : public PolicyTest {
 protected:
  std::string LineOf(const wexpol::RecordClass& record_class) {
    const wexpol::Table& table = record_class.table();
    std::string line = std::string(table.name()) + ' ' + table.json_key();
    for (const wexpol::ColumnDef& column : table.columns()) {
      line += ' ' + std::string(column.name) + ':' + CodecName(column.codec);
      for (int bit = 0; column.flags >> bit; ++bit) {
        if (column.flags >> bit & 1) line += '+' + std::string(kFlags[bit]);
      }
    }
    void* record = record_class.create();
    line += ' ';
    wexpol::GenerateRow(table, record_class.row(record), line);
    record_class.add(record, handle());
    record_class.destroy(record);
    return line + ' ' + Row(std::string("SELECT * FROM ") + table.name());
  }

  static constexpr const char* kFlags[] = {"key",      "required",   "strict", "well-formed",
                                           "assigned", "unreported", "always"};
};

TEST_F(RecordClassTest, EachIsDeclaredAsItsGoldenLineSays) {
  std::istringstream golden(ReadBytes(SourcePath("tests/records/record_classes.txt")));
  for (const wexpol::RecordClass* record_class : wexpol::AllTables()) {
    std::string line;
    std::getline(golden, line);
    EXPECT_EQ(LineOf(*record_class), line);
  }
  EXPECT_EQ(golden.get(), EOF);
  EXPECT_EQ(
      Row("SELECT count(*) FROM sqlite_schema WHERE type='table' AND name NOT LIKE 'sqlite%'"),
      std::to_string(wexpol::AllTables().size()));
}

// A column that stands in the wrong place would shift every read; the addresses of the fields show
// what no round trip can see.
TEST_F(RecordClassTest, ColumnsStandAsTheFileAndTheRecordHaveThem) {
  for (const wexpol::RecordClass* record_class : wexpol::AllTables()) {
    const wexpol::Table& table = record_class->table();
    SCOPED_TRACE(table.name());
    void* record = record_class->create();
    const void* last = nullptr;
    std::vector<std::string> names;
    for (const wexpol::ColumnDef& column : table.columns()) {
      EXPECT_LT(last, column.field(record_class->row(record))) << column.name;
      last = column.field(record_class->row(record));
      names.emplace_back(column.name);
    }
    record_class->destroy(record);
    // app_controls.policy_id is the business of the file's triggers.
    EXPECT_EQ(names, Rows(std::string("SELECT name FROM pragma_table_info('") + table.name() +
                          "') WHERE '" + table.name() + "'||name<>'app_controlspolicy_id'"));
  }
}

class RecordTest : public PolicyTest {};

TEST_F(RecordTest, WritesAnswerTheStepResult) {
  CAccount account;
  EXPECT_EQ(Json(account), "{}");
  EXPECT_EQ(account.Add2DB(handle()), SQLITE_DONE);  // A null key stays NULL.
  EXPECT_EQ(Row("SELECT id IS NULL FROM accounts"), "1");

  ASSERT_TRUE(ParseText(account, "{\"id\": 7, \"locale_id\": 1031, \"time_zone_id\": 3}"));
  EXPECT_EQ(account.Add2DB(handle()), SQLITE_DONE);
  EXPECT_EQ(account.Add2DB(handle()), SQLITE_CONSTRAINT);

  CAccount change;  // What is null is not written.
  change.id = 7;
  EXPECT_EQ(change.UpdateDB(handle()), SQLITE_ERROR);
  change.account_status_id = 2;
  EXPECT_EQ(change.UpdateDB(handle()), SQLITE_DONE);
  EXPECT_EQ(Row("SELECT * FROM accounts WHERE id=7"), "7|1031|2|3");
  EXPECT_EQ(change.DelFromDB(handle()), SQLITE_DONE);
  EXPECT_EQ(Rows("SELECT id FROM accounts"), std::vector<std::string>{"NULL"});

  Sql("DROP TABLE accounts");
  EXPECT_EQ(account.Add2DB(handle()), SQLITE_ERROR);
  EXPECT_EQ(account.DelFromDB(handle()), SQLITE_ERROR);
  EXPECT_EQ(account.Add2DB(nullptr), SQLITE_MISUSE);
  EXPECT_EQ(change.UpdateDB(nullptr), SQLITE_MISUSE);
}

TEST_F(RecordTest, TextsAreCopiedDeeplyAndHandedOver) {
  CLogin login;
  ASSERT_TRUE(ParseText(login, "{\"id\": 1, \"name\": \"anna\", \"comment\": \"\"}"));
  CLogin copy = login;
  copy.name = copy.name + 1;  // A part of itself.
  EXPECT_STREQ(copy.name, L"nna");
  EXPECT_STREQ(login.name, L"anna");
  CLogin moved = std::move(copy);
  EXPECT_EQ(copy.name, nullptr);
  EXPECT_EQ(Join(login.comment != nullptr, login.description == nullptr), "1 1");
  const wchar_t* name = moved.name;
  const wchar_t* comment = moved.comment;
  moved.Reset(false);  // The pointers are the caller's now.
  EXPECT_EQ(moved.name, nullptr);
  EXPECT_EQ(moved.is_admin, 1);
  EXPECT_STREQ(name, L"nna");
  delete[] name;
  delete[] comment;
}

TEST_F(RecordTest, AccountStoresItsLocaleWhileItIsParsed) {
  CAccount account;
  CAccount stored;
  for (const char* json :
       {"{}", "{\"id\": 1}", "{\"locale_id\": 1033}", "{\"id\": 1.0, \"locale_id\": 1033}",
        "{\"id\": 1, \"locale_id\": -1}", "[]", "{\"id\": 2147483648, \"locale_id\": 1033}"}) {
    EXPECT_FALSE(ParseText(account, json)) << json;
  }
  EXPECT_FALSE(stored.ReadLocaleIdFromRegistry());
  EXPECT_TRUE(ParseText(account, "{\"id\": 1, \"locale_id\": 1033, \"time_zone_id\": \"x\"}"));
  EXPECT_TRUE(stored.ReadLocaleIdFromRegistry());
  std::uint32_t value = 0;
  EXPECT_TRUE(wexpol::ReadDword(wexpol::AgentKey::kAgent, L"LID", &value));
  EXPECT_EQ(value, 1033u);
  EXPECT_EQ(stored.GetLocaleIdString(), "1033");
  stored.locale_id = 99999999;
  EXPECT_EQ(stored.GetLocaleIdString(), "");

  EXPECT_FALSE(account.CompareWithRegistry());
  EXPECT_TRUE(account.WriteToRegistry());
  EXPECT_TRUE(account.CompareWithRegistry());
  std::int32_t id = 0;
  EXPECT_TRUE(wexpol::ReadBinary(wexpol::AgentKey::kClass, L"ACP", &id, sizeof id));
  EXPECT_EQ(id, 1);
  EXPECT_FALSE(account.CompareWithRegistry(2));
}

TEST_F(RecordTest, AccountQuestionsAnswerTheirDefaults) {
  unsigned long locale = 5;
  EXPECT_EQ(Join(CAccount::GetAccountId(handle()), CAccount::IsAccountDisabled(handle()),
                 CAccount::GetLocaleId(locale, handle())),
            "-1 0 0");
  Sql("INSERT INTO accounts VALUES(NULL, NULL, NULL, NULL)");
  EXPECT_EQ(CAccount::GetAccountId(handle()), -1);
  EXPECT_TRUE(CAccount::GetLocaleId(locale, handle()));
  EXPECT_EQ(locale, 5u);
  Sql("UPDATE accounts SET id=9, locale_id=1031, account_status_id=65538");
  // The status counts as 16 bits.
  EXPECT_EQ(Join(CAccount::GetAccountId(handle()), CAccount::IsAccountDisabled(handle()),
                 CAccount::GetLocaleId(locale, handle())),
            "9 1 1");
  EXPECT_EQ(locale, 1031u);
}

}  // namespace

// The row operations: every table against the schema, every codec at its bounds.

#include <map>
#include <sstream>

#include "tests/support/policy_test.h"
#include "wexpol/catalog/catalog.h"
#include "wexpol/platform/agent_registry.h"
#include "wexpol/records/row.h"
#include "wexpol/records/synchronise.h"
#include "wexpol/records/table.h"

namespace {

using wexpol::Column;

class RecordTest : public PolicyTest {};

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

struct tblSample {
  std::int32_t id = -1;
  std::int16_t small = -1;
  std::uint32_t whole = UINT32_MAX;
  std::int64_t large = -1;
  std::uint64_t version = 0;
  bool on = true;
  bool strict = false;
  std::int16_t flag = -1;
  std::int16_t strict_flag = -1;
  wexpol::Text text;
  wexpol::WideText wide;
  std::array<std::uint8_t, 3> bytes = {};
};

class CSample : public wexpol::Record<CSample, tblSample> {
 public:
  static const wexpol::Table& Table() {
    static constexpr wexpol::ColumnDef kColumns[] = {
        Column<&tblSample::id>("id", wexpol::kKey),
        Column<&tblSample::small>("small"),
        Column<&tblSample::whole>("whole"),
        Column<&tblSample::large>("large"),
        Column<&tblSample::version>("version", wexpol::kUint64NullIsZero),
        Column<&tblSample::on>("is_on"),
        Column<&tblSample::strict>("strict", wexpol::kStrictBool),
        Column<&tblSample::flag>("flag", wexpol::kFlag16),
        Column<&tblSample::strict_flag>("strict_flag", wexpol::kStrictFlag16),
        Column<&tblSample::text>("text"),
        Column<&tblSample::wide>("wide"),
        Column<&tblSample::bytes>("bytes"),
    };
    static const wexpol::Table& table = *new wexpol::Table("samples", "sample", kColumns);
    return table;
  }
};

class CodecTest : public PolicyTest {
 protected:
  CodecTest() {
    Sql("CREATE TABLE samples(id INT, small INT, whole INT, large INT, version INT, is_on INT, "
        "strict INT, flag INT, strict_flag INT, text TEXT, wide TEXT, bytes BLOB)");
  }

  // The stored value of one column after a document was synchronised, typed as the engine has it.
  std::string Stored(const std::string& column, const std::string& value) {
    Sql("DELETE FROM samples");
    std::string error;
    EXPECT_TRUE(wexpol::AddDocument(handle(), wexpol::kRecordClass<CSample>,
                                    ("{\"" + column + "\": " + value + "}").c_str(), error));
    return Row("SELECT " + column + " FROM samples");
  }
};

TEST_F(CodecTest, ValuesAtTheirBoundsAreTheSameStraightAndThroughTheRecord) {
  const struct {
    const char* column;
    const char* json;
    const char* row;
    const char* out;  // The generated member; empty when left out.
  } kCases[] = {
      {"id", "2147483647", "2147483647", "2147483647"},
      {"id", "-2147483648", "-2147483648", "-2147483648"},
      {"id", "2147483648", "NULL", ""},
      {"id", "5.0", "NULL", ""},
      {"id", "-1", "NULL", ""},
      {"id", "\"5\"", "NULL", ""},
      {"id", "null", "NULL", ""},
      {"small", "32767", "32767", "32767"},
      {"small", "70000", "4464", "4464"},
      {"small", "65535", "NULL", ""},
      {"whole", "4294967294", "-2", "4294967294"},
      {"whole", "-2", "NULL", ""},
      {"large", "9223372036854775807", "9223372036854775807", "9223372036854775807"},
      {"large", "9223372036854775808", "NULL", ""},
      {"large", "0", "0", "0"},
      {"version", "0", "NULL", ""},
      {"version", "-1", "-1", "18446744073709551615"},
      {"version", "18446744073709551615", "NULL", ""},
      {"is_on", "false", "0", "false"},
      {"is_on", "0", "0", "false"},
      {"is_on", "null", "1", "true"},
      {"strict", "true", "1", "true"},
      {"strict", "1", "0", "false"},
      {"flag", "true", "1", "true"},
      {"flag", "0", "0", "false"},
      {"flag", "\"true\"", "NULL", ""},
      {"strict_flag", "false", "0", "false"},
      {"strict_flag", "1", "NULL", ""},
      {"text", "\"\"", "", "\"\""},
      {"text", "7", "NULL", ""},
      {"text", "\"a\\u0000b\"", "a", "\"a\""},
      {"text", "\"\\\"\\\\\\/\\b\\f\\n\\r\\t\\u0001\"", "\"\\/\b\f\n\r\t\x01",
       "\"\\\"\\\\/\\b\\f\\n\\r\\t\\u0001\""},
      {"text", "\"a\xFFz\"", "a\xFFz", "\"a\xEF\xBF\xBDz\""},
      {"wide", "\"a\xFFz\"", "a\xEF\xBF\xBDz", "\"a\xEF\xBF\xBDz\""},
      {"wide", "\"\xC0\xAF\xED\xA0\x80\"",
       "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD",
       "\"\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\""},
      {"wide", "\"gr\\u00fc\xC3\x9F \\ud83d\\ude00\"", "gr\xC3\xBC\xC3\x9F \xF0\x9F\x98\x80",
       "\"gr\xC3\xBC\xC3\x9F \xF0\x9F\x98\x80\""},
      {"bytes", "\"00fFA9\"", "00ffa9", "\"00ffa9\""},
      {"bytes", "\"00fFA\"", "000000", "\"000000\""},
      {"bytes", "\"00fFA90\"", "000000", "\"000000\""},
      {"bytes", "\"00fFAg\"", "000000", "\"000000\""},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(std::string(c.column) + ": " + c.json);
    EXPECT_EQ(Stored(c.column, c.json), c.row);

    CSample parsed;
    EXPECT_TRUE(ParseText(parsed, std::string("{\"") + c.column + "\": " + c.json + "}"));
    Sql("DELETE FROM samples");
    EXPECT_EQ(parsed.Add2DB(handle()), SQLITE_DONE);
    EXPECT_EQ(Row(std::string("SELECT ") + c.column + " FROM samples"), c.row);

    CSample read;
    wexpol::Statement select(handle(), "SELECT * FROM samples");
    ASSERT_TRUE(select.StepRow());
    read.CopyFromDB(select.get());
    const std::string member = std::string("\"") + c.column + "\": ";
    for (const CSample* record : {&parsed, &read}) {
      EXPECT_EQ(Json(*record).find(member) == std::string::npos, *c.out == '\0') << Json(*record);
      EXPECT_NE(Json(*record).find(*c.out ? member + c.out : "{"), std::string::npos)
          << Json(*record);
    }
  }
}

TEST_F(CodecTest, ABlobFillsTheFrontAndNothingElseIsTaken) {
  const std::pair<const char*, const char*> kCases[] = {{"x'aabb'", "\"aabb00\""},
                                                        {"x'aabbccdd'", "\"aabbcc\""},
                                                        {"x''", "\"000000\""},
                                                        {"'abc'", "\"000000\""},
                                                        {"NULL", "\"000000\""}};
  for (const auto& [sql, out] : kCases) {
    Sql(std::string("DELETE FROM samples; INSERT INTO samples(bytes) VALUES(") + sql + ")");
    CSample sample;
    wexpol::Statement select(handle(), "SELECT * FROM samples");
    ASSERT_TRUE(select.StepRow());
    sample.CopyFromDB(select.get());
    EXPECT_NE(Json(sample).find(out), std::string::npos) << sql;
  }
}

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
  EXPECT_EQ(Join(login.comment != nullptr, login.description == nullptr,
                 login.comment == login.description),
            "1 1 0");

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
  EXPECT_EQ(CAccount::GetAccountId(handle()), -1);
  EXPECT_FALSE(CAccount::IsAccountDisabled(handle()));
  EXPECT_FALSE(CAccount::GetLocaleId(locale, handle()));
  Sql("INSERT INTO accounts VALUES(NULL, NULL, NULL, NULL)");
  EXPECT_EQ(CAccount::GetAccountId(handle()), -1);
  EXPECT_TRUE(CAccount::GetLocaleId(locale, handle()));
  EXPECT_EQ(locale, 5u);
  Sql("UPDATE accounts SET id=9, locale_id=1031, account_status_id=65538");
  EXPECT_EQ(CAccount::GetAccountId(handle()), 9);
  EXPECT_TRUE(CAccount::IsAccountDisabled(handle()));  // The value counts as 16 bits.
  EXPECT_TRUE(CAccount::GetLocaleId(locale, handle()));
  EXPECT_EQ(locale, 1031u);
  EXPECT_EQ(CAccount::GetAccountId(nullptr), -1);
}

}  // namespace

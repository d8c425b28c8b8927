// Keys and values, whatever is stored in them; lines of the diagnostic log, and when it is put
// aside.

#include <thread>

#include "tests/support/child_process.h"
#include "tests/support/test_environment.h"
#include "wexpol/platform/diagnostic_log.h"
#include "wexpol/platform/named_mutex.h"
#include "wexpol/platform/registry.h"
#include "wexpol/platform/version.h"

namespace {

using wexpol::AgentKey;
using wexpol::RegistryAccess;
using wexpol::RegistryStatus;
using wexpol::RegistryType;
using wexpol::RegistryView;

constexpr wchar_t kPath[] = L"SOFTWARE\\Maker\\Pro.duct";

class RegistryTest : public ::testing::Test {
 protected:
  // Stores just the bytes of `units`, and half a character more when `odd`. The system adds a
  // terminator when one follows in memory.
  void Store(RegistryType type, const std::wstring& units, bool odd = false) {
    const std::wstring followed = units + L'z';
    ASSERT_TRUE(
        key_.SetValue(L"Value", type, followed.data(), units.size() * sizeof(wchar_t) + odd));
  }

  RegistryStatus Open(const wchar_t* path, RegistryView view = RegistryView::k32Bit) {
    return key_.Open(path, RegistryAccess::kRead, view);
  }

  TestEnvironment environment_;
  CRegistryVeyra key_;
};

TEST_F(RegistryTest, TellsAMissingKeyFromOtherFailures) {
  EXPECT_EQ(Open(kPath), RegistryStatus::kNotFound);
  EXPECT_EQ(Open(L""), RegistryStatus::kFailed);
  for (const std::wstring& path : {std::wstring(), std::wstring(300, L'k')}) {
    EXPECT_EQ(key_.Create(path, RegistryAccess::kFull, RegistryView::k32Bit),
              RegistryStatus::kFailed);
  }
  EXPECT_FALSE(key_.IsOpen());

  std::uint32_t value = 7;
  EXPECT_EQ(Join(key_.SetDWORDValue(L"Value", 1), key_.QueryDWORDValue(L"Value", &value),
                 key_.DeleteValue(L"Value"), key_.SubkeyNames().size()),
            "0 0 0 0");
  EXPECT_TRUE(key_.OpenForWriting(kPath, RegistryView::k32Bit));
  EXPECT_EQ(Open(L"software\\MAKER\\pro.DUCT"), RegistryStatus::kOk);
  EXPECT_EQ(Join(key_.SetDWORDValue(L"Value", 1), key_.DeleteValue(L"Value")), "0 0")
      << "read only";
}

TEST_F(RegistryTest, ValuesAreReadOnlyAsTheTypeTheyAre) {
  ASSERT_TRUE(key_.OpenForWriting(kPath, RegistryView::k64Bit));
  ASSERT_TRUE(key_.SetDWORDValue(L"Number", 0xFFFFFFFE));
  ASSERT_TRUE(key_.SetTextValue(L"Text", L"\u00e4b"));
  ASSERT_TRUE(key_.SetBinaryValue(L"Bytes", "\1\0\3\4", 4));

  // What reads succeed; those that fail leave what was read before.
  std::uint32_t number = 7;
  std::wstring text;
  char bytes[8] = "before";
  std::size_t size = 7;
  const std::pair<const wchar_t*, const char*> cases[] = {
      {L"NUMBER", "1 0 0"}, {L"text", "0 1 0"}, {L"Bytes", "0 0 1"}, {L"Missing", "0 0 0"}};
  for (const auto& [name, reads] : cases) {
    EXPECT_EQ(Join(key_.QueryDWORDValue(name, &number), key_.QueryTextValue(name, &text),
                   key_.QueryBinaryValue(name, bytes, 8, &size)),
              reads);
  }
  EXPECT_EQ(number, 0xFFFFFFFE);
  EXPECT_EQ(text, L"\u00e4b");
  EXPECT_EQ(std::string(bytes, size), std::string("\1\0\3\4", 4));
  // Too large for the buffer, not the exact size, and as it is.
  EXPECT_FALSE(key_.QueryBinaryValue(L"Bytes", bytes, 3, &size));
  EXPECT_FALSE(key_.QueryBinaryValue(L"Bytes", bytes, 5));
  EXPECT_TRUE(key_.QueryBinaryValue(L"Bytes", bytes, 4));

  EXPECT_TRUE(key_.DeleteValue(L"number"));
  EXPECT_FALSE(key_.DeleteValue(L"Number"));
  ASSERT_TRUE(key_.SetBinaryValue(L"Text", "12345", 5));
  EXPECT_FALSE(key_.QueryTextValue(L"Text", &text)) << "replaced by another type";
  ASSERT_TRUE(key_.SetValue(L"Text", RegistryType::kDword, "12345", 5));
  EXPECT_FALSE(key_.QueryDWORDValue(L"Text", &number)) << "of another size";
}

TEST_F(RegistryTest, TextsEndWhateverIsStored) {
  ASSERT_TRUE(key_.OpenForWriting(kPath, RegistryView::kProcess));
  for (const std::wstring& stored :
       {std::wstring(), std::wstring(L"ab"), std::wstring(L"ab\0cd\0", 6), std::wstring(1, 0)}) {
    for (const bool odd : {false, true}) {
      for (const RegistryType type : {RegistryType::kString, RegistryType::kExpandString}) {
        Store(type, stored, odd);
        std::wstring text = L"before";
        EXPECT_TRUE(key_.QueryTextValue(L"Value", &text));
        EXPECT_EQ(text, stored.c_str());
      }
    }
  }
  std::wstring text;
  Store(RegistryType::kString, std::wstring(128, L'x'));
  EXPECT_TRUE(key_.QueryTextValue(L"Value", &text));
  EXPECT_EQ(text.size(), 128u);
  EXPECT_TRUE(key_.SetTextValue(L"Value", std::wstring(128, L'x')));
  EXPECT_FALSE(key_.QueryTextValue(L"Value", &text)) << "with its terminator 129";
  EXPECT_TRUE(key_.QueryTextValue(L"Value", &text, 129));
}

TEST_F(RegistryTest, ViewsAreApartAndSubkeysAreListed) {
  for (const wchar_t* name : {L"Uninstall\\{B-1}", L"Uninstall\\a.b", L"Uninstall\\a.b\\deeper"}) {
    ASSERT_TRUE(key_.OpenForWriting(name, RegistryView::k32Bit));
  }
  EXPECT_EQ(Open(L"Uninstall", RegistryView::k64Bit), RegistryStatus::kNotFound);
  EXPECT_EQ(Open(L"Uninstall", RegistryView::kProcess), RegistryStatus::kNotFound);
  ASSERT_TRUE(key_.OpenForWriting(L"Uninstall", RegistryView::k32Bit));
  ASSERT_TRUE(key_.SetDWORDValue(L"value", 1)) << "a value is no subkey";
  auto names = key_.SubkeyNames();
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<std::wstring>{L"a.b", L"{B-1}"}));
}

TEST_F(RegistryTest, TheAgentKeyIsLookedUpOnceInTheClassKey) {
  EXPECT_EQ(wexpol::AgentKeyPath(), L"SOFTWARE\\ZENTRA Software\\Corvane Agent");
  EXPECT_EQ(wexpol::RuntimeKeyPath(), L"SOFTWARE\\ZENTRA SoftwareKv Runtime");
  ASSERT_TRUE(wexpol::WriteText(AgentKey::kClass, L"RK", L"SOFTWARE\\Other"));
  ASSERT_TRUE(wexpol::WriteText(AgentKey::kClass, L"RR", L"SOFTWARE\\Root\\"));
  EXPECT_EQ(wexpol::AgentKeyPath(), L"SOFTWARE\\ZENTRA Software\\Corvane Agent");

  wexpol::ResetAgentKeysForTesting();
  EXPECT_EQ(wexpol::AgentKeyPath(), L"SOFTWARE\\Other");
  EXPECT_EQ(wexpol::RootKeyPath(), L"SOFTWARE\\Root\\");
  EXPECT_EQ(wexpol::RuntimeKeyPath(), L"SOFTWARE\\Root\\Kv Runtime");
  ASSERT_TRUE(wexpol::WriteDword(AgentKey::kAgent, L"BID", 6));
  EXPECT_EQ(Open(L"SOFTWARE\\Other"), RegistryStatus::kOk);

  // An empty path names no key, and is asked for again.
  ASSERT_TRUE(wexpol::WriteText(AgentKey::kClass, L"RK", L""));
  wexpol::ResetAgentKeysForTesting();
  EXPECT_FALSE(wexpol::WriteDword(AgentKey::kAgent, L"BID", 5));
  ASSERT_TRUE(wexpol::WriteText(AgentKey::kClass, L"RK", L"SOFTWARE\\Other"));
  std::uint32_t brand = 0;
  EXPECT_TRUE(wexpol::ReadDword(AgentKey::kAgent, L"BID", &brand));
  EXPECT_EQ(brand, 6u);
  EXPECT_TRUE(wexpol::DeleteValue(AgentKey::kAgent, L"BID"));
  EXPECT_FALSE(wexpol::DeleteValue(AgentKey::kAgent, L"BID"));
}

// Writes one of two values of one letter, over and over, and reads what is there: never a mixture.
int WriteAndRead(const Arguments& arguments) {
  const std::wstring mine(100, static_cast<wchar_t>(arguments.at(0)[0]));
  int good = 0;
  for (int i = 0; i < 200; ++i) {
    std::wstring seen;
    good += wexpol::WriteText(AgentKey::kAgent, L"Shared", mine) &&
            wexpol::ReadText(AgentKey::kAgent, L"Shared", &seen) && seen.size() == 100 &&
            seen.find_first_not_of(seen[0]) == seen.npos;
  }
  return good == 200 ? 0 : 1;
}
const ChildFunction kWriteAndRead("registry_write_and_read", WriteAndRead);

TEST_F(RegistryTest, ProcessesShareIt) {
  ChildProcess other(environment_.folder(), "registry_write_and_read", {"a"});
  EXPECT_EQ(WriteAndRead({"b"}), 0);
  EXPECT_TRUE(other.Succeeded());
}

using wexpol::LogMessage;

class DiagnosticLogTest : public ::testing::Test {
 protected:
  // A file's text with the line ends of C.
  static std::string TextOf(const std::wstring& path) {
    std::string text = ReadBytes(path);
    std::erase(text, '\r');
    return text;
  }

  TestEnvironment environment_;
  const std::wstring path_ = CFilePaths::GetLocationLogFile();
  const std::wstring old_path_ = path_ + L".old.log";
};

TEST_F(DiagnosticLogTest, ColumnsHaveEightCharacters) {
  EXPECT_EQ(wexpol::LogColumn(L""), L"        ");
  EXPECT_EQ(wexpol::LogColumn(L"administrators"), L"administ");
  EXPECT_EQ(wexpol::ProgramColumn(L"C:\\Program.Files\\a.b.exe"), L"a.b     ");
  EXPECT_EQ(wexpol::ProgramColumn(L"C:\\Program.Files\\agent"), L"agent   ");
}

TEST_F(DiagnosticLogTest, LinesFollowTheVersionOfANewFile) {
  ASSERT_TRUE(CDeviceInfo::WriteDeviceID(42));
  WriteBytes(path_, "");  // an empty file is a new one
  environment_.clock().SetLocal(2009, 7, 4, 8, 5, 9);
  EXPECT_TRUE(LogMessage("%s = %d", "s\xC3\xA4t", -5));
  EXPECT_TRUE(LogMessage("%s", std::string(100'000, 'x').c_str()));

  const std::string head = "07/04/09 08:05:09 " +
                           wexpol::WideToUtf8(wexpol::LogColumn(wexpol::CurrentUserName())) +
                           " wexpol_t - WexPol > ";
  EXPECT_EQ(TextOf(path_), "ClientVersion = " WEXPOL_VERSION ", DeviceID = 42\n" + head +
                               "s\xC3\xA4t = -5\n" + head + std::string(100'000, 'x') + "\n");
}

TEST_F(DiagnosticLogTest, AFileLargerThanTheThresholdIsPutAside) {
  const std::pair<std::uint32_t, std::size_t> cases[] = {{0, 5'242'880}, {1, 10'485'760}};
  for (const auto& [debug, threshold] : cases) {
    if (debug) wexpol::WriteDword(wexpol::AgentKey::kAgent, L"EnableLogLevelDebug", debug);
    wexpol::ResetLogForTesting();
    WriteBytes(path_, std::string(threshold, 'x'));
    WriteBytes(old_path_, "older");
    EXPECT_TRUE(LogMessage("appended"));
    EXPECT_GT(wexpol::FileSize(path_).value_or(0), threshold);
    EXPECT_EQ(ReadBytes(old_path_), "older");

    WriteBytes(path_, std::string(threshold + 1, 'x'));
    EXPECT_TRUE(LogMessage("fresh"));
    EXPECT_EQ(wexpol::FileSize(old_path_), threshold + 1);
    EXPECT_TRUE(TextOf(path_).starts_with("ClientVersion"));
    EXPECT_LT(wexpol::FileSize(path_).value_or(threshold), 200u);
  }
}

TEST_F(DiagnosticLogTest, ALineIsDroppedWhenTheFileIsNotToBeHad) {
  wexpol::NamedMutex mutex(L"Global\\Veyra_Log");
  ASSERT_EQ(mutex.Wait(0), wexpol::NamedMutex::WaitResult::kObtained);
  bool written = true;
  std::thread([&] { written = LogMessage("waits 2 seconds"); }).join();
  EXPECT_FALSE(written);
  mutex.Release();
  EXPECT_FALSE(wexpol::FileExists(path_));

  wexpol::RedirectFiles(environment_.PathOf(L"none"));
  wexpol::ResetLogForTesting();
  EXPECT_FALSE(LogMessage("no folder"));
}

}  // namespace

#include "wexpol/platform/registry.h"

#include <gtest/gtest.h>

#include <tuple>
#include <utility>

#include "tests/support/child_process.h"
#include "tests/support/test_environment.h"
#include "wexpol/platform/agent_registry.h"
#include "wexpol/platform/device_info.h"
#include "wexpol/platform/testing.h"

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

  TestEnvironment environment_;
  CRegistryVeyra key_;
};

TEST_F(RegistryTest, TellsAMissingKeyFromOtherFailures) {
  EXPECT_EQ(key_.Open(kPath, RegistryAccess::kRead, RegistryView::k32Bit),
            RegistryStatus::kNotFound);
  EXPECT_EQ(key_.Open(L"", RegistryAccess::kRead, RegistryView::k32Bit), RegistryStatus::kFailed);
  EXPECT_EQ(key_.Create(L"", RegistryAccess::kRead, RegistryView::k32Bit), RegistryStatus::kFailed);
  EXPECT_EQ(key_.Create(std::wstring(300, L'k'), RegistryAccess::kFull, RegistryView::k32Bit),
            RegistryStatus::kFailed);
  EXPECT_FALSE(key_.IsOpen());

  std::uint32_t value = 7;
  EXPECT_EQ(Join(key_.SetDWORDValue(L"Value", 1), key_.QueryDWORDValue(L"Value", &value),
                 key_.DeleteValue(L"Value"), key_.SubkeyNames().size()),
            "0 0 0 0");
  EXPECT_TRUE(key_.OpenForWriting(kPath, RegistryView::k32Bit));
  EXPECT_EQ(key_.Open(L"software\\MAKER\\pro.DUCT", RegistryAccess::kRead, RegistryView::k32Bit),
            RegistryStatus::kOk);
  EXPECT_FALSE(key_.SetDWORDValue(L"Value", 1)) << "opened for reading";
  EXPECT_FALSE(key_.DeleteValue(L"Value"));
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
  EXPECT_EQ(
      Join(key_.QueryBinaryValue(L"Bytes", bytes, 3, &size),
           key_.QueryBinaryValue(L"Bytes", bytes, 5), key_.QueryBinaryValue(L"Bytes", bytes, 4)),
      "0 0 1");

  EXPECT_TRUE(key_.DeleteValue(L"number"));
  EXPECT_FALSE(key_.DeleteValue(L"Number"));
  ASSERT_TRUE(key_.SetBinaryValue(L"Text", "12345", 5));
  EXPECT_FALSE(key_.QueryTextValue(L"Text", &text)) << "replaced by another type";
  ASSERT_TRUE(key_.SetValue(L"Text", RegistryType::kDword, "12345", 5));
  EXPECT_FALSE(key_.QueryDWORDValue(L"Text", &number)) << "of another size";
}

TEST_F(RegistryTest, TextsEndWhateverIsStored) {
  ASSERT_TRUE(key_.OpenForWriting(kPath, RegistryView::kProcess));
  const std::tuple<std::wstring, bool, const wchar_t*> cases[] = {
      {L"", false, L""},
      {L"", true, L""},
      {L"ab", false, L"ab"},
      {L"ab", true, L"ab"},
      {std::wstring(L"ab\0cd\0", 6), false, L"ab"},
      {std::wstring(L"\0", 1), true, L""},
  };
  for (const auto& [stored, odd, expected] : cases) {
    for (const RegistryType type : {RegistryType::kString, RegistryType::kExpandString}) {
      Store(type, stored, odd);
      std::wstring text = L"before";
      EXPECT_TRUE(key_.QueryTextValue(L"Value", &text));
      EXPECT_EQ(text, expected);
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
  EXPECT_EQ(key_.Open(L"Uninstall", RegistryAccess::kRead, RegistryView::k64Bit),
            RegistryStatus::kNotFound);
  EXPECT_EQ(key_.Open(L"Uninstall", RegistryAccess::kRead, RegistryView::kProcess),
            RegistryStatus::kNotFound);
  ASSERT_EQ(key_.Open(L"Uninstall", RegistryAccess::kFull, RegistryView::k32Bit),
            RegistryStatus::kOk);
  ASSERT_TRUE(key_.SetDWORDValue(L"value", 1)) << "a value is no subkey";
  auto names = key_.SubkeyNames();
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<std::wstring>{L"a.b", L"{B-1}"}));
}

TEST_F(RegistryTest, AMovedKeyHasOneOwner) {
  ASSERT_TRUE(key_.OpenForWriting(L"One", RegistryView::k32Bit));
  CRegistryVeyra other;
  ASSERT_TRUE(other.OpenForWriting(L"Two", RegistryView::k32Bit));
  other = std::move(key_);
  ASSERT_TRUE(other.SetDWORDValue(L"Value", 1));
  CRegistryVeyra third(std::move(other));
  std::uint32_t value;
  EXPECT_TRUE(third.QueryDWORDValue(L"Value", &value));
  EXPECT_FALSE(other.IsOpen());
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
  EXPECT_EQ(key_.Open(L"SOFTWARE\\Other", RegistryAccess::kRead, RegistryView::k32Bit),
            RegistryStatus::kOk);

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

TEST_F(RegistryTest, TheDeviceIdIsASignedNumberOfTheAgentKey) {
  long id = 7;
  EXPECT_FALSE(CDeviceInfo::GetDeviceID(&id));
  EXPECT_EQ(id, 7);
  for (const long stored : {0L, -1L, 2147483647L}) {
    EXPECT_TRUE(CDeviceInfo::WriteDeviceID(stored));
    EXPECT_EQ(CDeviceInfo::GetDeviceID(&id) ? id : 7, stored);
  }
  std::uint32_t bits = 0;
  EXPECT_TRUE(wexpol::ReadDword(AgentKey::kAgent, L"DID", &bits));
  EXPECT_EQ(bits, 0x7FFFFFFFu);
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

}  // namespace

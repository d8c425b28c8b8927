#include <gtest/gtest.h>

#include <numeric>
#include <string>
#include <string_view>

#include "wexpol/platform/firmware.h"
#include "wexpol/platform/hash.h"
#include "wexpol/platform/system_info.h"

namespace {

using wexpol::Asked;
using wexpol::Bytes;

template <typename Digest>
std::string Hex(const Digest& digest) {
  std::string text;
  for (const int byte : digest) {
    text += "0123456789abcdef"[byte >> 4];
    text += "0123456789abcdef"[byte & 15];
  }
  return text;
}

TEST(HashTest, DigestsAreTheKnownOnes) {
  wexpol::Md5Digest md5;
  wexpol::Sha1Digest sha1;
  for (const auto hash : {wexpol::Md5, wexpol::CryptdllMd5}) {
    ASSERT_TRUE(hash("abc", 3, &md5));
    EXPECT_EQ(Hex(md5), "900150983cd24fb0d6963f7d28e17f72");
    ASSERT_TRUE(hash("", 0, &md5));
    EXPECT_EQ(Hex(md5), "d41d8cd98f00b204e9800998ecf8427e");
  }
  ASSERT_TRUE(wexpol::Sha1("abc", 3, &sha1));
  EXPECT_EQ(Hex(sha1), "a9993e364706816aba3e25717850c26c9cd0d89d");
}

TEST(FirmwareTest, TheSystemsAnswerIsCutToTheTableThatIsThere) {
  const Bytes answer = {0, 2, 8, 0, 3, 0, 0, 0, 'a', 'b', 'c', 'd'};
  const auto table = [&](std::size_t size) {
    const Bytes found = wexpol::TableInSystemAnswer({answer.data(), answer.data() + size});
    return std::string(found.begin(), found.end());
  };
  EXPECT_EQ(table(12), "abc");
  EXPECT_EQ(table(10), "ab");
  for (std::size_t size = 0; size <= 8; ++size) EXPECT_EQ(table(size), "") << size;
}

TEST(FirmwareTest, TheTableInMemoryIsFoundByItsEntryPoint) {
  Bytes area(0x10000);
  // Length 0x0102 and address 0x000E1234, both little-endian.
  const Bytes entry = {'_', 'D', 'M', 'I', '_', 0, 0x02, 0x01, 0x34, 0x12, 0x0E, 0, 1, 0, 0x24};
  const auto find = [&area] {
    return wexpol::TableInMemory([&](std::uint32_t address, std::size_t size) {
      if (address == 0xF0000) return area;
      EXPECT_EQ(address, 0xE1234u);
      return Bytes(size, 7);
    });
  };
  EXPECT_TRUE(find().empty());
  std::copy(entry.begin(), entry.end(), area.begin() + 0x110);  // its bytes do not add up to 0
  EXPECT_TRUE(find().empty());
  std::copy(entry.begin(), entry.end(), area.end() - 16);
  area[0xFFF5] = static_cast<std::uint8_t>(0 - std::accumulate(entry.begin(), entry.end(), 0));
  EXPECT_EQ(find(), Bytes(0x0102, 7));
  area.resize(area.size() - 2);
  EXPECT_TRUE(find().empty()) << "cut short";
  area.clear();
  EXPECT_TRUE(find().empty());
}

TEST(SystemInfoTest, ABufferGrowsToTheSizeThatIsAskedFor) {
  constexpr std::wstring_view kName = L"a-name-of-23-characters";
  const auto ask = [&](std::size_t first_size, std::size_t reported) {
    return wexpol::AskWithGrowingBuffer(first_size, [=](wchar_t* buffer, std::size_t* size) {
      const bool fits = *size > kName.size();
      *size = fits ? kName.size() : reported;
      if (fits) kName.copy(buffer, kName.size());
      return fits ? Asked::kOk : Asked::kTooSmall;
    });
  };
  EXPECT_EQ(ask(32, 0), kName);
  EXPECT_EQ(ask(3, 24), kName);
  EXPECT_EQ(ask(3, 10), std::nullopt) << "would it ever end?";
  EXPECT_EQ(wexpol::AskWithGrowingBuffer(8, [](auto...) { return Asked::kFailed; }), std::nullopt);
}

TEST(SystemInfoTest, TheMachineAnswers) {
  EXPECT_FALSE(wexpol::ComputerDnsHostName().value_or(L"").empty());
  std::array<std::uint8_t, 16> one = {}, two = {};
  EXPECT_TRUE(wexpol::AllocateUuid(&one));
  EXPECT_TRUE(wexpol::AllocateUuid(&two));
  EXPECT_NE(one, two);
  if (const auto version = wexpol::QueryWindowsVersion()) {
    EXPECT_GE(version->major, 5u);
    EXPECT_NE(version->product_type, 0u);
  }
  wexpol::ReadSmbiosTable();
}

}  // namespace

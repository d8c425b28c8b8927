// What the machine offers: files, calendar times and the clock in use, objects that processes
// share, what the firmware and the system answer.

#include <cstdlib>
#include <cstring>
#include <numeric>
#include <string>
#include <thread>

#include "tests/support/child_process.h"
#include "tests/support/test_environment.h"
#include "wexpol/platform/firmware.h"
#include "wexpol/platform/named_mutex.h"
#include "wexpol/platform/shared_memory.h"
#include "wexpol/platform/system_info.h"
#include "wexpol/platform/system_types.h"

namespace {

TEST(FilesTest, PathsAreDividedAtTheLastSeparator) {
  const std::wstring cases[][3] = {{L"C:\\a b\\c.exe", L"C:\\a b", L"c.exe"},
                                   {L"C:\\a.b\\", L"C:\\a.b", L""},
                                   {L"\\c", L"", L"c"},
                                   {L"c.exe", L"", L"c.exe"}};
  for (const auto& [path, folder, name] : cases) {
    EXPECT_EQ(wexpol::FolderOf(path), folder) << path;
    EXPECT_EQ(wexpol::FileNameOf(path), name) << path;
  }
  EXPECT_EQ(wexpol::FileNameOf(wexpol::JoinPath(L"folder", L"name")), L"name");
  EXPECT_EQ(wexpol::ReplaceFileName(L"C:\\a\\b.exe", L"wexpol.db"), L"C:\\a\\wexpol.db");
  EXPECT_EQ(wexpol::ReplaceFileName(L"b.exe", L"wexpol.db"), L"");
  const std::wstring longest = L"\\" + std::wstring(248, L'x') + L"\\";
  EXPECT_EQ(wexpol::ReplaceFileName(longest + L"b", L"wexpol.db").size(), 259u);
  EXPECT_EQ(wexpol::ReplaceFileName(longest + L"b", L"wexpol.db2"), L"");
}

TEST(FilesTest, FoldersAndPatternsExistToo) {
  TestEnvironment environment;
  WriteBytes(environment.PathOf(L"a[1].txt"), "12345");
  EXPECT_EQ(Join(wexpol::FileExists(environment.folder()), wexpol::FileExists(L"")), "1 0");
  for (const auto& [name, exists] : {std::pair(L"a[1].txt", true),
                                     {L"*.txt", true},
                                     {L"a???.t*", true},
                                     {L"*", true},
                                     {L"b", false},
                                     {L"*.db", false},
                                     {L"a[1].txt/*", false}}) {
    EXPECT_EQ(wexpol::FileExists(environment.PathOf(name)), exists) << name;
  }
  EXPECT_EQ(wexpol::FileSize(environment.PathOf(L"a[1].txt")), 5u);
  EXPECT_EQ(wexpol::FileSize(environment.PathOf(L"none")), std::nullopt);
}

TEST(FilesTest, CopiesRenamesAndRemoves) {
  TestEnvironment environment;
  const std::wstring one = environment.PathOf(L"\u00f6ne"), two = environment.PathOf(L"two");
  WriteBytes(one, "new");
  WriteBytes(two, "longer old");
  EXPECT_FALSE(wexpol::RenameFile(one, two));
  EXPECT_TRUE(wexpol::CopyFileOver(one, two));
  EXPECT_EQ(ReadBytes(two), "new");
  EXPECT_FALSE(wexpol::CopyFileOver(environment.PathOf(L"none"), two));
  EXPECT_EQ(ReadBytes(two), "new");

  std::fputs(" end\n", wexpol::OpenForAppend(two).get());
  EXPECT_EQ(ReadBytes(two).substr(0, 7), "new end");
  EXPECT_EQ(wexpol::OpenForAppend(wexpol::JoinPath(two, L"file")), nullptr);

  EXPECT_TRUE(wexpol::RemoveFile(two));
  EXPECT_FALSE(wexpol::RemoveFile(two));
  EXPECT_TRUE(wexpol::RenameFile(one, two));
  EXPECT_EQ(ReadBytes(two), "new");
}

TEST(FilesTest, LocationsLieInOneFolder) {
  const std::wstring machine = wexpol::FolderOf(CFilePaths::GetLocationDB());
  EXPECT_EQ(wexpol::FileNameOf(machine), L"Corvane Agent");
  TestEnvironment environment;
  EXPECT_EQ(CFilePaths::GetLocationDB(), environment.PathOf(L"wexpol.db"));
  EXPECT_EQ(CFilePaths::GetLocationBackupDB(), environment.PathOf(L"wexpol.bak"));
  EXPECT_EQ(CFilePaths::GetLocationLogFile(), environment.PathOf(L"wexpol.log"));
  EXPECT_EQ(wexpol::FolderOf(CFilePaths::GetOlbInstallLogFilePath()), environment.folder());
  EXPECT_TRUE(wexpol::FileNameOf(wexpol::ExecutablePath()).starts_with(L"wexpol_tests"));
  EXPECT_FALSE(wexpol::CurrentUserName().empty());
}

SYSTEMTIME Time(int year, int month, int day, int hour = 0, int minute = 0, int second = 0,
                int milliseconds = 0, int day_of_week = 0) {
  const auto narrow = [](int value) { return static_cast<std::uint16_t>(value); };
  return {narrow(year), narrow(month),  narrow(day_of_week), narrow(day),
          narrow(hour), narrow(minute), narrow(second),      narrow(milliseconds)};
}

auto Fields(const SYSTEMTIME& time) {
  return std::tuple(+time.wYear, +time.wMonth, +time.wDayOfWeek, +time.wDay, +time.wHour,
                    +time.wMinute, +time.wSecond, +time.wMilliseconds);
}

TEST(ClockTest, FileTimesAndCalendarTimesAreEachOther) {
  const std::pair<SYSTEMTIME, std::int64_t> cases[] = {
      {Time(1601, 1, 1, 0, 0, 0, 0, 1), 0},
      {Time(1970, 1, 1, 0, 0, 0, 0, 4), 116'444'736'000'000'000},
      {Time(2000, 2, 29, 23, 59, 59, 999, 2), 125'963'423'999'990'000},
      {Time(2100, 3, 1, 0, 0, 0, 1, 1), 157'520'160'000'010'000},
      {Time(30827, 12, 31, 23, 59, 59, 999, 5), 9'223'149'887'999'990'000},
  };
  for (const auto& [time, file_time] : cases) {
    std::int64_t converted = -1;
    EXPECT_TRUE(wexpol::ToFileTime(time, &converted));
    EXPECT_EQ(converted, file_time);
    EXPECT_EQ(Fields(wexpol::FromFileTime(file_time)), Fields(time)) << file_time;
  }
  std::int64_t day = 0;
  for (int i = 0; i < 150'000; ++i, day += 86'400 * wexpol::kFileTimePerSecond) {
    std::int64_t back = -1;
    ASSERT_TRUE(wexpol::ToFileTime(wexpol::FromFileTime(day), &back));
    ASSERT_EQ(back, day);
  }
}

TEST(ClockTest, TimesThatDoNotExistAreRefused) {
  std::int64_t untouched = 7;
  for (const SYSTEMTIME& time :
       {Time(1600, 12, 31), Time(30828, 1, 1), Time(2023, 2, 29), Time(2100, 2, 29),
        Time(2024, 4, 31), Time(2024, 0, 1), Time(2024, 13, 1), Time(2024, 1, 0),
        Time(2024, 1, 1, 24), Time(2024, 1, 1, 0, 60), Time(2024, 1, 1, 0, 0, 60),
        Time(2024, 1, 1, 0, 0, 0, 1000), Time(65535, 65535, 65535, 65535)}) {
    EXPECT_FALSE(wexpol::ToFileTime(time, &untouched));
  }
  EXPECT_EQ(untouched, 7);
  for (const std::int64_t time : {INT64_MIN, INT64_MAX}) {
    EXPECT_EQ(Fields(wexpol::FromFileTime(time)), Fields(SYSTEMTIME{}));
    EXPECT_EQ(Fields(wexpol::UtcToLocal(time)), Fields(SYSTEMTIME{}));
  }
  EXPECT_EQ(Fields(wexpol::FromFileTime(-1)), Fields(SYSTEMTIME{}));
  EXPECT_EQ(wexpol::FileTimeToUnix(wexpol::UnixToFileTime(-3) + 1), -3);
  EXPECT_EQ(wexpol::FileTimeToUnix(-1), -wexpol::kUnixEpochInSeconds - 1);
}

TEST(ClockTest, AllOfItFollowsTheClockInUse) {
  TestEnvironment environment;
  EXPECT_EQ(wexpol::NowUtc(), 1'710'331'200);
  environment.clock().SetLocalOffset(-3600);
  environment.clock().Advance(61);
  EXPECT_EQ(wexpol::NowUtc(), 1'710'331'261);
  EXPECT_EQ(Fields(wexpol::NowLocal()), Fields(Time(2024, 3, 13, 11, 1, 1, 0, 3)));
  EXPECT_EQ(Fields(wexpol::UtcToLocal(0)), Fields(Time(1969, 12, 31, 23, 0, 0, 0, 3)));
  EXPECT_EQ(wexpol::TickCount(), 61'000u);
}

#ifndef _WIN32
// Succeeds when the machine's own clock takes the zone of the process.
const ChildFunction kReadsZone("reads_zone", [](const Arguments&) {
  ::setenv("TZ", "HERE-5:30", 1);
  return wexpol::UtcToLocal(0).wHour == 5 && wexpol::UtcToLocal(0).wMinute == 30 ? 0 : 1;
});

TEST(ClockTest, TheHostsClockKnowsItsZone) {
  TestEnvironment environment;
  EXPECT_TRUE(ChildProcess(environment.folder(), "reads_zone").Succeeded());
}
#endif

using wexpol::NamedMapping;
using wexpol::NamedMutex;
using WaitResult = wexpol::NamedMutex::WaitResult;

constexpr wchar_t kName[] = L"Global\\Corvane Test";
constexpr wchar_t kBlockName[] =
    L"Global\\Corvane Test Block";  // all kinds of object share their names
constexpr std::size_t kSize = 168;

class SharedObjectsTest : public ::testing::Test {
 protected:
  // What another thread's wait answers.
  static WaitResult WaitElsewhere(std::uint32_t timeout_ms) {
    WaitResult result;
    std::thread([&] { result = NamedMutex(kName).Wait(timeout_ms); }).join();
    return result;
  }

  TestEnvironment environment_;
};

// Ends as a killed process would, with the mutex held and the block mapped.
int EndAsOwner(const Arguments&) {
  NamedMutex mutex(kName);
  NamedMapping block(kBlockName, kSize);
  const bool obtained = mutex.Wait(5000) == WaitResult::kObtained;
  if (block.created()) std::memset(block.data(), 'x', kSize);
  std::_Exit(obtained && block.data() ? 0 : 1);
}
const ChildFunction kEndAsOwner("end_as_owner", EndAsOwner);

TEST_F(SharedObjectsTest, AMutexHasOneOwnerUntilItIsReleasedOrEnds) {
  {
    NamedMutex mutex(kName);
    ASSERT_EQ(mutex.Wait(0), WaitResult::kObtained);
    EXPECT_EQ(WaitElsewhere(0), WaitResult::kTimeout);
    EXPECT_EQ(WaitElsewhere(20), WaitResult::kTimeout);
    mutex.Release();
    EXPECT_EQ(WaitElsewhere(0), WaitResult::kObtained);
    ASSERT_EQ(mutex.Wait(0), WaitResult::kObtained);
  }
  EXPECT_EQ(WaitElsewhere(0), WaitResult::kObtained);
}

TEST_F(SharedObjectsTest, AMutexWhoseOwnerDiedIsObtained) {
  NamedMutex mutex(kName);
  EXPECT_TRUE(ChildProcess(environment_.folder(), "end_as_owner").Succeeded());
  EXPECT_EQ(mutex.Wait(0), WaitResult::kObtained);
}

TEST_F(SharedObjectsTest, AMutexWithoutANameThatWorksFails) {
  NamedMutex mutex(L"No\\Such\\Place\\" + std::wstring(300, L'x'));
  EXPECT_FALSE(mutex.IsValid());
  EXPECT_EQ(mutex.Wait(0), WaitResult::kFailed);
}

TEST_F(SharedObjectsTest, TheFirstMakesTheBlockAndTheLastEndsIt) {
  NamedMapping first(kBlockName, kSize);
  ASSERT_NE(first.data(), nullptr);
  EXPECT_TRUE(first.created());
  std::memset(first.data(), 'b', kSize);

  EXPECT_TRUE(ChildProcess(environment_.folder(), "end_as_owner").Succeeded());
  NamedMapping second(kBlockName, kSize);
  EXPECT_FALSE(second.created());
  ASSERT_NE(second.data(), nullptr);
  EXPECT_EQ(std::string(static_cast<char*>(second.data()), kSize), std::string(kSize, 'b'));
  EXPECT_EQ(NamedMapping(kBlockName, 1 << 20).data(), nullptr) << "smaller than asked for";

  second = std::move(first);
  EXPECT_FALSE(NamedMapping(kBlockName, kSize).created()) << "the moved one still holds it";
  second = NamedMapping();

  // Nor does a process that was killed leave one behind.
  EXPECT_TRUE(ChildProcess(environment_.folder(), "end_as_owner").Succeeded());
  NamedMapping fresh(kBlockName, kSize);
  EXPECT_TRUE(fresh.created());
  ASSERT_NE(fresh.data(), nullptr);
  EXPECT_EQ(std::string(static_cast<char*>(fresh.data()), kSize), std::string(kSize, '\0'));
}

using wexpol::Asked;
using wexpol::Bytes;

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
  constexpr std::wstring_view kText = L"a-name-of-23-characters";
  const auto ask = [&](std::size_t first_size, std::size_t reported) {
    return wexpol::AskWithGrowingBuffer(first_size, [=](wchar_t* buffer, std::size_t* size) {
      const bool fits = *size > kText.size();
      *size = fits ? kText.size() : reported;
      if (fits) kText.copy(buffer, kText.size());
      return fits ? Asked::kOk : Asked::kTooSmall;
    });
  };
  EXPECT_EQ(ask(32, 0), kText);
  EXPECT_EQ(ask(3, 24), kText);
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

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <thread>
#include <utility>

#include "tests/support/child_process.h"
#include "tests/support/test_environment.h"
#include "wexpol/platform/named_mutex.h"
#include "wexpol/platform/shared_memory.h"

namespace {

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
  first = NamedMapping();
  EXPECT_FALSE(NamedMapping(kBlockName, kSize).created()) << "the moved one still holds it";
  second = NamedMapping();
  EXPECT_EQ(second.data(), nullptr);

  // Nor does a process that was killed leave one behind.
  EXPECT_TRUE(ChildProcess(environment_.folder(), "end_as_owner").Succeeded());
  NamedMapping fresh(kBlockName, kSize);
  EXPECT_TRUE(fresh.created());
  ASSERT_NE(fresh.data(), nullptr);
  EXPECT_EQ(std::string(static_cast<char*>(fresh.data()), kSize), std::string(kSize, '\0'));
}

}  // namespace

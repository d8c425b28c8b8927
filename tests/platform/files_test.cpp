#include "platform/files.h"

#include <gtest/gtest.h>

#include "platform/file_paths.h"
#include "tests/support/test_environment.h"

namespace {

TEST(FilesTest, PathsAreDividedAtTheLastSeparator) {
  const struct {
    const wchar_t *path, *folder, *name;
  } cases[] = {
      {L"C:\\a b\\c.exe", L"C:\\a b", L"c.exe"},
      {L"C:\\a.b\\", L"C:\\a.b", L""},
      {L"\\c", L"", L"c"},
      {L"c.exe", L"", L"c.exe"},
      {L"", L"", L""},
  };
  for (const auto& [path, folder, name] : cases) {
    EXPECT_EQ(platform::FolderOf(path), folder) << path;
    EXPECT_EQ(platform::FileNameOf(path), name) << path;
  }
  EXPECT_EQ(platform::FileNameOf(platform::JoinPath(L"folder", L"name")), L"name");
  EXPECT_EQ(platform::ReplaceFileName(L"C:\\a\\b.exe", L"wexpol.db"), L"C:\\a\\wexpol.db");
  EXPECT_EQ(platform::ReplaceFileName(L"b.exe", L"wexpol.db"), L"");
  const std::wstring longest = L"\\" + std::wstring(248, L'x') + L"\\";
  EXPECT_EQ(platform::ReplaceFileName(longest + L"b", L"wexpol.db").size(), 259u);
  EXPECT_EQ(platform::ReplaceFileName(longest + L"b", L"wexpol.db2"), L"");
}

TEST(FilesTest, FoldersAndPatternsExistToo) {
  TestEnvironment environment;
  WriteBytes(environment.PathOf(L"a[1].txt"), "12345");
  const auto exists = [&](const wchar_t* name) {
    return platform::FileExists(environment.PathOf(name));
  };
  EXPECT_TRUE(platform::FileExists(environment.folder()));
  EXPECT_TRUE(exists(L"a[1].txt") && exists(L"*.txt") && exists(L"a???.t*") && exists(L"*"));
  EXPECT_FALSE(exists(L"b") || exists(L"*.db") || exists(L"a[1].txt/*"));
  EXPECT_FALSE(platform::FileExists(L""));
  EXPECT_EQ(platform::FileSize(environment.PathOf(L"a[1].txt")), 5u);
  EXPECT_EQ(platform::FileSize(environment.PathOf(L"none")), std::nullopt);
}

TEST(FilesTest, CopiesRenamesAndRemoves) {
  TestEnvironment environment;
  const std::wstring one = environment.PathOf(L"\u00f6ne"), two = environment.PathOf(L"two");
  WriteBytes(one, "new");
  WriteBytes(two, "longer old");
  EXPECT_FALSE(platform::RenameFile(one, two));
  EXPECT_TRUE(platform::CopyFileOver(one, two));
  EXPECT_EQ(ReadBytes(two), "new");
  EXPECT_FALSE(platform::CopyFileOver(environment.PathOf(L"none"), two));
  EXPECT_EQ(ReadBytes(two), "new");

  std::fputs(" end\n", platform::OpenForAppend(two).get());
  EXPECT_EQ(ReadBytes(two).substr(0, 7), "new end");
  EXPECT_EQ(platform::OpenForAppend(platform::JoinPath(two, L"file")), nullptr);

  EXPECT_TRUE(platform::RemoveFile(two));
  EXPECT_FALSE(platform::RemoveFile(two));
  EXPECT_TRUE(platform::RenameFile(one, two));
  EXPECT_EQ(ReadBytes(two), "new");
}

TEST(FilesTest, LocationsLieInOneFolder) {
  const std::wstring machine = platform::FolderOf(CFilePaths::GetLocationDB());
  EXPECT_EQ(platform::FileNameOf(machine), L"Corvane Agent");
  TestEnvironment environment;
  EXPECT_EQ(CFilePaths::GetLocationDB(), environment.PathOf(L"wexpol.db"));
  EXPECT_EQ(CFilePaths::GetLocationBackupDB(), environment.PathOf(L"wexpol.bak"));
  EXPECT_EQ(CFilePaths::GetLocationLogFile(), environment.PathOf(L"wexpol.log"));
  EXPECT_EQ(platform::FolderOf(CFilePaths::GetOlbInstallLogFilePath()), environment.folder());
  EXPECT_TRUE(platform::FileNameOf(platform::ExecutablePath()).starts_with(L"wexpol_tests"));
  EXPECT_FALSE(platform::CurrentUserName().empty());
}

}  // namespace

#include "wexpol/platform/files.h"

#include <gtest/gtest.h>

#include "tests/support/test_environment.h"
#include "wexpol/platform/file_paths.h"

namespace {

TEST(FilesTest, PathsAreDividedAtTheLastSeparator) {
  const std::wstring cases[][3] = {
      {L"C:\\a b\\c.exe", L"C:\\a b", L"c.exe"},
      {L"C:\\a.b\\", L"C:\\a.b", L""},
      {L"\\c", L"", L"c"},
      {L"c.exe", L"", L"c.exe"},
      {L"", L"", L""},
  };
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
  const auto exists = [&](const wchar_t* name) {
    return wexpol::FileExists(environment.PathOf(name));
  };
  EXPECT_EQ(Join(wexpol::FileExists(environment.folder()), wexpol::FileExists(L"")), "1 0");
  EXPECT_EQ(Join(exists(L"a[1].txt"), exists(L"*.txt"), exists(L"a???.t*"), exists(L"*")),
            "1 1 1 1");
  EXPECT_EQ(Join(exists(L"b"), exists(L"*.db"), exists(L"a[1].txt/*")), "0 0 0");
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

}  // namespace

// What the built files and the process's surroundings must not give away or let in.

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tests/support/child_process.h"
#include "tests/support/policy_test.h"
#include "wexpol/platform/file_rights.h"
#include "wexpol/policydb/database_key.h"

#ifdef _WIN32
#include <windows.h>
#include <sddl.h>
#else
#include <sys/inotify.h>
#include <unistd.h>
#endif

namespace {

TEST(Secrets, TheKeyLiesInNoBuiltFile) {
  const auto key = wexpol::DatabaseKey();
  const std::string bytes(key.begin(), key.end());
  const std::wstring self = wexpol::ExecutablePath();
  int looked_at = 0;
  for (const wchar_t* name : {L"wexpol_tests", L"wexpol_tests.exe", L"libwexpol.so", L"wexpol.dll",
                              L"wexpolctl", L"wexpolctl.exe"}) {
    const std::string file = ReadBytes(wexpol::ReplaceFileName(self, name));
    if (file.empty()) continue;
    ++looked_at;
    for (const std::string& run : {bytes, std::string(bytes.rbegin(), bytes.rend())}) {
      EXPECT_EQ(file.find(run), file.npos) << wexpol::WideToUtf8(name);
    }
  }
  EXPECT_GE(looked_at, 1);
}

// Decrypts while a variable names a configuration that would allow no cipher at all.
int DecryptDespiteConfiguration(const Arguments& arguments) {
#ifdef _WIN32
  ::SetEnvironmentVariableA("OPENSSL_CONF", arguments.at(0).c_str());
  ::_putenv_s("OPENSSL_CONF", arguments.at(0).c_str());
#else
  ::setenv("OPENSSL_CONF", arguments.at(0).c_str(), 1);
#endif
  CPolicy policy;
  policy.SetProxyServerPassword(L"old");
  return policy.SetProxyServerPasswordEncrypted(L"E1M2lfxpZ7k=", L"key") &&
                 policy.IsProxyServerPasswordDifferent(L"old")
             ? 0
             : 1;
}
const ChildFunction kDecrypt("decrypt_despite_configuration", DecryptDespiteConfiguration);

TEST(Secrets, NoConfigurationOfTheCryptographicLibraryIsRead) {
  TestEnvironment environment;
  const std::wstring file = environment.PathOf(L"openssl.cnf");
  WriteBytes(file,
             "openssl_conf = start\n[start]\nalg_section = properties\n"
             "[properties]\ndefault_properties = fips=yes\n");
#ifndef _WIN32
  const int watch = ::inotify_init1(IN_NONBLOCK);
  ASSERT_GE(::inotify_add_watch(watch, wexpol::WideToUtf8(file).c_str(), IN_OPEN), 0);
#endif
  EXPECT_TRUE(ChildProcess(environment.folder(), "decrypt_despite_configuration",
                           {wexpol::WideToUtf8(file)})
                  .Succeeded());
#ifndef _WIN32
  char events[4096];
  EXPECT_LT(::read(watch, events, sizeof events), 0) << "somebody has opened it";
  ::close(watch);
#endif
}

TEST(Secrets, FoldersAreTheSystemsAndAdministrators) {
  const std::wstring alone = L"O:BAD:PAI(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)";
  const struct {
    std::wstring made, expected;
  } cases[] = {
      {wexpol::PrivateFolderDescriptor(L""), alone},
      {wexpol::PrivateFolderDescriptor(L"S-1-5-32-545"),
       alone + L"(A;OICI;0x1200a9;;;S-1-5-32-545)"},
      {wexpol::LogFolderDescriptor(), alone + L"(A;OICI;0x1301bf;;;AU)S:(ML;OICI;NW;;;LW)"},
  };
  for (const auto& [made, expected] : cases) {
    EXPECT_EQ(made, expected);
#ifdef _WIN32
    void* descriptor = nullptr;
    EXPECT_TRUE(::ConvertStringSecurityDescriptorToSecurityDescriptorW(made.c_str(), 1, &descriptor,
                                                                       nullptr));
    ::LocalFree(descriptor);
#endif
  }
  TestEnvironment environment;
  const std::wstring folder = environment.PathOf(L"a\u00e4\\b");
  EXPECT_FALSE(wexpol::MakePrivateFolder(folder, L"no such group"));
}

}  // namespace

#include "wexpol/platform/file_paths.h"

#include "wexpol/platform/files.h"
#include "wexpol/platform/testing.h"

namespace {

std::wstring g_redirected;

std::wstring In(const std::wstring& machines_folder, const wchar_t* name) {
  const std::wstring& folder = g_redirected.empty() ? machines_folder : g_redirected;
  return folder.empty() ? std::wstring() : wexpol::JoinPath(folder, name);
}

std::wstring InAgentFolder(const wchar_t* name) { return In(wexpol::DataFolder(), name); }

}  // namespace

std::wstring CFilePaths::GetLocationDB() { return InAgentFolder(L"wexpol.db"); }

std::wstring CFilePaths::GetLocationBackupDB() { return InAgentFolder(L"wexpol.bak"); }

std::wstring CFilePaths::GetLocationLogFile() { return In(wexpol::LogFolder(), L"wexpol.log"); }

std::wstring CFilePaths::GetOlbInstallLogFilePath() { return InAgentFolder(L"olb_install.log"); }

void wexpol::RedirectFiles(const std::wstring& folder) { g_redirected = folder; }

#include "wexpol/platform/file_paths.h"

#include "wexpol/platform/files.h"
#include "wexpol/platform/testing.h"

namespace {

std::wstring g_redirected;

std::wstring InAgentFolder(const wchar_t* name) {
  const std::wstring folder = g_redirected.empty() ? wexpol::DataFolder() : g_redirected;
  return folder.empty() ? std::wstring() : wexpol::JoinPath(folder, name);
}

}  // namespace

std::wstring CFilePaths::GetLocationDB() { return InAgentFolder(L"wexpol.db"); }

std::wstring CFilePaths::GetLocationBackupDB() { return InAgentFolder(L"wexpol.bak"); }

std::wstring CFilePaths::GetLocationLogFile() { return InAgentFolder(L"wexpol.log"); }

std::wstring CFilePaths::GetOlbInstallLogFilePath() { return InAgentFolder(L"olb_install.log"); }

void wexpol::RedirectFiles(const std::wstring& folder) { g_redirected = folder; }

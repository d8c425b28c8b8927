#include "wexpol/platform/win32/shared_name.h"

#include "wexpol/platform/files.h"
#include "wexpol/platform/testing.h"

namespace wexpol {
namespace {

std::wstring g_suffix;

}  // namespace

void RedirectSharedObjects(const std::wstring& folder) {
  g_suffix = folder.empty() ? L"" : L"." + FileNameOf(folder);
}

std::wstring SharedObjectName(const std::wstring& name) { return name + g_suffix; }

}  // namespace wexpol

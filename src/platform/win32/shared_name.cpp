#include "platform/win32/shared_name.h"

#include "platform/files.h"
#include "platform/testing.h"

namespace platform {
namespace {

std::wstring g_suffix;

}  // namespace

void RedirectSharedObjects(const std::wstring& folder) {
  g_suffix = folder.empty() ? L"" : L"." + FileNameOf(folder);
}

std::wstring SharedObjectName(const std::wstring& name) { return name + g_suffix; }

}  // namespace platform

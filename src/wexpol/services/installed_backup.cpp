#include "wexpol/services/installed_backup.h"

#include <cstddef>

#include "wexpol/platform/registry.h"
#include "wexpol/platform/text.h"

namespace wexpol {
namespace {

constexpr wchar_t kUninstallPath[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall";
constexpr wchar_t kShadowBackupEntry[] = L"ShadowProtect";
constexpr wchar_t kCloudBackupName[] = L"Zentra Corvane Cloud Backup";
constexpr std::size_t kMaxVersion = 32;  // Characters, the terminator not counted.

bool OpenEntry(CRegistryVeyra& key, const std::wstring& entry, RegistryView view) {
  return key.Open(std::wstring(kUninstallPath) + L"\\" + entry, RegistryAccess::kRead, view) ==
         RegistryStatus::kOk;
}

// The first entry that is shown under that name; its own name is a product code.
bool OpenEntryShownAs(CRegistryVeyra& key, const wchar_t* shown, RegistryView view) {
  CRegistryVeyra entries;
  if (entries.Open(kUninstallPath, RegistryAccess::kRead, view) != RegistryStatus::kOk) {
    return false;
  }
  for (const std::wstring& entry : entries.SubkeyNames()) {
    std::wstring name;
    if (OpenEntry(key, entry, view) && key.QueryTextValue(L"DisplayName", &name) &&
        EqualIgnoringCase(name, shown)) {
      return true;
    }
  }
  return false;
}

bool OpenEntryOf(CRegistryVeyra& key, SUBSERVICE_ID id, RegistryView view) {
  switch (id) {
    case SUBSERVICE_ID_CLOUD_BACKUP:
      return OpenEntryShownAs(key, kCloudBackupName, view);
    case SUBSERVICE_ID_SHADOW_BACKUP:
      return OpenEntry(key, kShadowBackupEntry, view);
    default:
      return false;
  }
}

}  // namespace

std::optional<std::string> InstalledBackupVersion(SUBSERVICE_ID id) {
  CRegistryVeyra key;
  std::wstring version;
  if ((!OpenEntryOf(key, id, RegistryView::k64Bit) &&
       !OpenEntryOf(key, id, RegistryView::k32Bit)) ||
      !key.QueryTextValue(L"DisplayVersion", &version, kMaxVersion + 1)) {
    return std::nullopt;
  }
  return WideToUtf8(version);
}

}  // namespace wexpol

#include "wexpol/identity/machine_id.h"

#include <algorithm>

#include "wexpol/platform/firmware.h"
#include "wexpol/platform/hash.h"
#include "wexpol/platform/hex.h"
#include "wexpol/platform/registry.h"
#include "wexpol/platform/system_info.h"
#include "wexpol/platform/text.h"

namespace wexpol {
namespace {

// An SMBIOS structure: type, length of the formatted part, two bytes of a handle, the fields. Its
// texts follow, each ended by a zero, and the last by one more.
constexpr std::size_t kHeaderSize = 4;
constexpr std::uint8_t kSystemInformation = 1;
constexpr std::size_t kUuidOffset = 8;

constexpr wchar_t kSystemKey[] = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion";
constexpr wchar_t kInstallDateValue[] = L"InstallDate";
constexpr wchar_t kInstallationIdValue[] = L"data";
constexpr char kKeyNameSeed[] = "QelCSCommonMachineIdManager::createMachineId";
constexpr std::size_t kInstallationIdChars = 32;

template <std::size_t kSize>
std::string Hex(const std::array<std::uint8_t, kSize>& bytes,
                const char* digits = kLowerHexDigits) {
  std::string text;
  AppendHex(bytes.data(), kSize, text, digits);
  return text;
}

// Dashes after 8, 12, 16 and 20 digits.
std::string WithDashes(std::string digits) {
  for (const std::size_t at : {8u, 13u, 18u, 23u}) digits.insert(at, 1, '-');
  return digits;
}

std::uint32_t InstallDate() {
  std::uint32_t date = 0;
  for (const RegistryView view : {RegistryView::kProcess, RegistryView::k64Bit}) {
    CRegistryVeyra key;
    if (key.Open(kSystemKey, RegistryAccess::kQuery, view) == RegistryStatus::kOk &&
        key.QueryDWORDValue(kInstallDateValue, &date) && date != 0) {
      break;
    }
  }
  return date;
}

// Empty when the system does not tell when it was installed.
std::wstring InstallationKey() {
  const std::uint32_t date = InstallDate();
  return date == 0 ? std::wstring() : InstallationKeyPath(date);
}

bool Store(const std::wstring& key_path, std::string_view id) {
  CRegistryVeyra key;
  return key.OpenForWriting(key_path, RegistryView::kProcess) &&
         key.SetTextValue(kInstallationIdValue, Utf8ToWide(id));
}

std::string ReadInstallationId(const std::wstring& key_path) {
  CRegistryVeyra key;
  std::wstring id;
  if (key.Open(key_path, RegistryAccess::kFull, RegistryView::kProcess) == RegistryStatus::kOk) {
    key.QueryTextValue(kInstallationIdValue, &id, kInstallationIdChars + 1);
  }
  std::string utf8 = WideToUtf8(id);
  return utf8.size() <= kInstallationIdChars ? utf8 : std::string();
}

// An id that could not be stored would be another one the next time, so there is none then.
std::string InstallationId() {
  const std::wstring key_path = InstallationKey();
  if (key_path.empty()) return {};
  std::string id = ReadInstallationId(key_path);
  if (!id.empty()) return id;
  SystemUuid uuid;
  if (!AllocateUuid(&uuid)) return {};
  id = Hex(uuid);
  return Store(key_path, id) ? id : std::string();
}

}  // namespace

std::optional<SystemUuid> FindSystemUuid(const std::uint8_t* table, std::size_t size) {
  std::size_t at = 0;
  while (size - at >= kHeaderSize) {
    const std::uint8_t* structure = table + at;
    const std::size_t length = structure[1];
    if (length < kHeaderSize || length > size - at) break;
    if (structure[0] == kSystemInformation) {
      SystemUuid uuid;
      if (length < kUuidOffset + uuid.size()) break;
      std::copy_n(structure + kUuidOffset, uuid.size(), uuid.begin());
      return uuid;
    }
    at += length;
    while (size - at >= 2 && (table[at] != 0 || table[at + 1] != 0)) ++at;
    if (size - at < 2) break;
    at += 2;
  }
  return std::nullopt;
}

std::string HardwareId(const SystemUuid& uuid) {
  const std::string text = WithDashes(Hex(uuid));
  Sha1Digest digest;
  if (!Sha1(text.data(), text.size(), &digest)) return {};
  return Hex(digest);
}

std::wstring InstallationKeyPath(std::uint32_t install_date) {
  const std::string seed = kKeyNameSeed + std::to_string(install_date);
  Md5Digest digest;
  if (!Md5(seed.data(), seed.size(), &digest)) return {};
  return L"SOFTWARE\\Classes\\CLSID\\{" + Utf8ToWide(WithDashes(Hex(digest, kUpperHexDigits))) +
         L"} ";
}

std::string MachineId() {
  const std::string installation = InstallationId();
  if (installation.empty()) return {};
  const Bytes table = ReadSmbiosTable();
  const auto uuid = FindSystemUuid(table.data(), table.size());
  return installation + ' ' + (uuid ? HardwareId(*uuid) : std::string());
}

bool StoreInstallationId(std::string_view id) { return Store(InstallationKey(), id); }

}  // namespace wexpol

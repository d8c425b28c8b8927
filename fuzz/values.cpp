// Bytes and texts from outside: the firmware's table, time zones, passwords and links, values in
// the registry.

#include <algorithm>

#include "fuzz/fuzz.h"
#include "wexpol.h"
#include "wexpol/devicecare/brand.h"
#include "wexpol/identity/machine_id.h"
#include "wexpol/identity/password.h"
#include "wexpol/identity/proxy_password.h"
#include "wexpol/platform/agent_registry.h"
#include "wexpol/platform/firmware.h"
#include "wexpol/platform/text.h"
#include "wexpol/services/installed_backup.h"

namespace {

using fuzz::Require;

// The input as the system's answer, and as the BIOS area of physical memory.
void ReadFirmware(std::string_view input) {
  const wexpol::Bytes bytes(input.begin(), input.end());
  wexpol::FindSystemUuid(bytes.data(), bytes.size());
  const wexpol::Bytes answered = wexpol::TableInSystemAnswer(bytes);
  wexpol::FindSystemUuid(answered.data(), answered.size());
  const wexpol::Bytes found =
      wexpol::TableInMemory([&](std::uint32_t address, std::size_t size) -> wexpol::Bytes {
        const std::size_t from = std::min<std::size_t>(address & 0xffff, bytes.size());
        const std::size_t count = std::min(size, bytes.size() - from);
        return {bytes.begin() + static_cast<long>(from),
                bytes.begin() + static_cast<long>(from + count)};
      });
  wexpol::FindSystemUuid(found.data(), found.size());
}

void DecodeZone(std::string_view input) {
  REG_TZI_FORMAT zone;
  CTimeZone::ConvertCommaSeparatedWindowsDataToTZI(&zone, std::string(input).c_str());
}

// Three lines: stored, entered, key; all of them as a link.
void FitSecrets(std::string_view input) {
  CInstallInvite invite;
  invite.link = std::string(input).c_str();
  std::wstring parameters;
  invite.BuildInstallCmdLineParameters(parameters);
  const std::wstring stored = wexpol::Utf8ToWide(fuzz::TakeLine(input));
  const std::wstring entered = wexpol::Utf8ToWide(fuzz::TakeLine(input));
  const std::wstring key = wexpol::Utf8ToWide(input);
  if (wexpol::FitsPassword(stored, entered)) Require(!stored.empty(), "a password");
  wexpol::DecryptProxyPassword(stored, key);
  wexpol::DecryptProxyPassword(entered, key);
}

// The type of the values, then their bytes, which every reader of a value gets.
void ReadRegistry(std::string_view input) {
  fuzz::Database();
  if (input.empty()) return;
  const auto type = static_cast<wexpol::RegistryType>(input.front() % 8);
  input.remove_prefix(1);
  for (const std::wstring& path : {wexpol::AgentKeyPath(), wexpol::RootKeyPath()}) {
    CRegistryVeyra key;
    if (!key.OpenForWriting(path, wexpol::RegistryView::k32Bit)) continue;
    for (const wchar_t* name : {L"UT", L"LID", L"ACP", L"PN", L"BID", L"INV", L"DID", L"SV"}) {
      key.SetValue(name, type, input.data(), input.size());
    }
  }
  SYSTEMTIME time;
  CAvSchedule::ReadUpdateTime(time);
  CAvSchedule schedule;
  schedule.period_minutes = 60;
  schedule.HowLongUntilSchedule();
  CAccount account;
  account.ReadLocaleIdFromRegistry();
  account.CompareWithRegistry();
  account.GetLocaleIdString();
  CInstallInvite().ReadInstallInviteIdFromRegistry();
  CDeviceSubserviceVersion version;
  if (version.ReadFromRegistry(L"SV")) version.HowLongSinceLastUpdate();
  long id = 0;
  CDeviceInfo::GetDeviceID(&id);
  wexpol::ReleaseBrandForTesting();
  wexpol::BrandOf(wexpol::ReadBrandInfo());
}

const fuzz::Harness kFirmware("firmware", &ReadFirmware);
const fuzz::Harness kZone("zone", &DecodeZone);
const fuzz::Harness kSecrets("secrets", &FitSecrets);
const fuzz::Harness kRegistry("registry", &ReadRegistry);

}  // namespace

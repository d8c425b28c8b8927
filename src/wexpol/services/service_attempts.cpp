#include "wexpol/services/service_attempts.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "wexpol/platform/agent_registry.h"
#include "wexpol/platform/diagnostic_log.h"
#include "wexpol/services/device_service.h"

namespace wexpol {
namespace {

constexpr std::size_t kMaxName = 79;
constexpr std::wstring_view kNumber = L"%02d";

}  // namespace

std::wstring AttemptsValueName(short service_id, const wchar_t* format) {
  std::wstring name = format ? format : L"";
  const std::size_t at = name.find(kNumber);
  if (at != std::wstring::npos) {
    const std::wstring digits = std::to_wstring(service_id);
    name.replace(at, kNumber.size(), digits.size() < 2 ? L"0" + digits : digits);
  }
  return name.size() <= kMaxName ? name : std::wstring();
}

bool ReadAttempts(short& count, short service_id, const wchar_t* format) {
  const std::wstring name = AttemptsValueName(service_id, format);
  std::uint32_t value;
  if (name.empty() || !ReadDword(AgentKey::kAgent, name.c_str(), &value)) return false;
  count = static_cast<short>(value);
  return true;
}

bool WriteAttempts(short service_id, short count, const wchar_t* format) {
  const std::wstring name = AttemptsValueName(service_id, format);
  return !name.empty() &&
         WriteDword(AgentKey::kAgent, name.c_str(), static_cast<std::uint32_t>(count));
}

bool StartAttempts(short service_id, short status) {
  if (status != kServiceLastStage) return false;
  LogMessage("SetServiceStatus _service_id=%d, _countAttempts=0", service_id);
  // Both are written, whatever comes of the first.
  const bool downloads = WriteAttempts(service_id, 0, kDownloadAttempts);
  const bool installs = WriteAttempts(service_id, 0, kInstallAttempts);
  return downloads || installs;
}

int CountAttempt(short service_id, const wchar_t* format) {
  short stored;
  if (!ReadAttempts(stored, service_id, format)) return -1;
  const int count = stored + 1;
  LogMessage("IncrementServiceAttempts _service_id=%d, _countAttempts=%d", service_id, count);
  if (count > kMaxAttempts) return 0;
  return WriteAttempts(service_id, static_cast<short>(count), format) ? 1 : -1;
}

bool HasExceededAttempts(short service_id, const wchar_t* format) {
  short count;
  return ReadAttempts(count, service_id, format) && count > kMaxAttempts;
}

}  // namespace wexpol

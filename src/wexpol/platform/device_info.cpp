#include "wexpol/platform/device_info.h"

#include "wexpol/platform/agent_registry.h"

namespace {

constexpr wchar_t kDeviceIdValue[] = L"DID";

}  // namespace

bool CDeviceInfo::GetDeviceID(long* id) {
  std::uint32_t stored;
  if (!wexpol::ReadDword(wexpol::AgentKey::kAgent, kDeviceIdValue, &stored)) return false;
  *id = static_cast<std::int32_t>(stored);
  return true;
}

bool CDeviceInfo::WriteDeviceID(long id) {
  return wexpol::WriteDword(wexpol::AgentKey::kAgent, kDeviceIdValue,
                            static_cast<std::uint32_t>(id));
}

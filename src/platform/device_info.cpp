#include "platform/device_info.h"

#include "platform/agent_registry.h"

namespace {

constexpr wchar_t kDeviceIdValue[] = L"DID";

}  // namespace

bool CDeviceInfo::GetDeviceID(long* id) {
  std::uint32_t stored;
  if (!platform::ReadDword(platform::AgentKey::kAgent, kDeviceIdValue, &stored)) return false;
  *id = static_cast<std::int32_t>(stored);
  return true;
}

bool CDeviceInfo::WriteDeviceID(long id) {
  return platform::WriteDword(platform::AgentKey::kAgent, kDeviceIdValue,
                              static_cast<std::uint32_t>(id));
}

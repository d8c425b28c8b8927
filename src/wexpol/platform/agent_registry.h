// The agent's two registry keys, named here only, both always in the 32-bit view.

#ifndef WEXPOL_PLATFORM_AGENT_REGISTRY_H_
#define WEXPOL_PLATFORM_AGENT_REGISTRY_H_

#include <cstddef>
#include <cstdint>
#include <string>

#include "wexpol/platform/registry.h"

namespace wexpol {

enum class AgentKey {
  kAgent,  // settings and counters; its path comes from the class key, else is the default
  kClass,  // below the system's class registrations; holds the paths and the product name
};

// Paths under HKEY_LOCAL_MACHINE. Those that the class key names are looked up once per process;
// only an empty one is looked up again.
std::wstring AgentKeyPath();
std::wstring RootKeyPath();
std::wstring RuntimeKeyPath();

// Missing value, wrong type or wrong size: false, outputs untouched.
bool ReadDword(AgentKey key, const wchar_t* name, std::uint32_t* value);
bool ReadText(AgentKey key, const wchar_t* name, std::wstring* value);
// Up to `capacity` bytes, how many in `size`; without `size`, exactly `capacity` bytes.
bool ReadBinary(AgentKey key, const wchar_t* name, void* data, std::size_t capacity,
                std::size_t* size = nullptr);

// A write creates the key when it does not exist.
bool WriteDword(AgentKey key, const wchar_t* name, std::uint32_t value);
bool WriteText(AgentKey key, const wchar_t* name, const std::wstring& value);
bool WriteBinary(AgentKey key, const wchar_t* name, const void* data, std::size_t size);

// Never creates the key. True when the value existed and is gone.
bool DeleteValue(AgentKey key, const wchar_t* name);

}  // namespace wexpol

#endif  // WEXPOL_PLATFORM_AGENT_REGISTRY_H_

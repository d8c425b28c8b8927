#include "wexpol/platform/agent_registry.h"

#include <mutex>

#include "wexpol/platform/testing.h"

namespace wexpol {
namespace {

constexpr wchar_t kClassKeyPath[] =
    L"SOFTWARE\\Classes\\CLSID\\{5B1E7C42-3A9D-4F60-8E21-C7D4A9B03F58}\\164";
constexpr wchar_t kDefaultRootPath[] = L"SOFTWARE\\ZENTRA Software";
constexpr wchar_t kDefaultAgentPath[] = L"SOFTWARE\\ZENTRA Software\\Corvane Agent";

struct PathCache {
  std::mutex lock;
  std::wstring agent;
  std::wstring root;
  std::wstring runtime;
};

PathCache& Cache() {
  static PathCache cache;
  return cache;
}

const std::wstring& LookUp(std::wstring& cached, const wchar_t* name, const wchar_t* standard) {
  if (!cached.empty()) return cached;
  CRegistryVeyra key;
  if (key.Open(kClassKeyPath, RegistryAccess::kQuery, RegistryView::k32Bit) !=
          RegistryStatus::kOk ||
      !key.QueryTextValue(name, &cached)) {
    cached = standard;
  }
  return cached;
}

std::wstring PathOf(AgentKey key) {
  return key == AgentKey::kClass ? kClassKeyPath : AgentKeyPath();
}

bool OpenFor(RegistryAccess access, AgentKey which, CRegistryVeyra* key) {
  return key->Open(PathOf(which), access, RegistryView::k32Bit) == RegistryStatus::kOk;
}

bool OpenForWriting(AgentKey which, CRegistryVeyra* key) {
  return key->OpenForWriting(PathOf(which), RegistryView::k32Bit);
}

}  // namespace

std::wstring AgentKeyPath() {
  const std::lock_guard<std::mutex> guard(Cache().lock);
  return LookUp(Cache().agent, L"RK", kDefaultAgentPath);
}

std::wstring RootKeyPath() {
  const std::lock_guard<std::mutex> guard(Cache().lock);
  return LookUp(Cache().root, L"RR", kDefaultRootPath);
}

std::wstring RuntimeKeyPath() {
  const std::lock_guard<std::mutex> guard(Cache().lock);
  PathCache& cache = Cache();
  // No separator comes between the two, as other programs of the agent build it.
  if (cache.runtime.empty()) {
    cache.runtime = LookUp(cache.root, L"RR", kDefaultRootPath) + L"Kv Runtime";
  }
  return cache.runtime;
}

void ResetAgentKeysForTesting() {
  const std::lock_guard<std::mutex> guard(Cache().lock);
  for (std::wstring* path : {&Cache().agent, &Cache().root, &Cache().runtime}) path->clear();
}

bool ReadDword(AgentKey which, const wchar_t* name, std::uint32_t* value) {
  CRegistryVeyra key;
  return OpenFor(RegistryAccess::kRead, which, &key) && key.QueryDWORDValue(name, value);
}

bool ReadText(AgentKey which, const wchar_t* name, std::wstring* value) {
  CRegistryVeyra key;
  return OpenFor(RegistryAccess::kRead, which, &key) && key.QueryTextValue(name, value);
}

bool ReadBinary(AgentKey which, const wchar_t* name, void* data, std::size_t capacity,
                std::size_t* size) {
  CRegistryVeyra key;
  return OpenFor(RegistryAccess::kRead, which, &key) &&
         key.QueryBinaryValue(name, data, capacity, size);
}

bool WriteDword(AgentKey which, const wchar_t* name, std::uint32_t value) {
  CRegistryVeyra key;
  return OpenForWriting(which, &key) && key.SetDWORDValue(name, value);
}

bool WriteText(AgentKey which, const wchar_t* name, const std::wstring& value) {
  CRegistryVeyra key;
  return OpenForWriting(which, &key) && key.SetTextValue(name, value);
}

bool WriteBinary(AgentKey which, const wchar_t* name, const void* data, std::size_t size) {
  CRegistryVeyra key;
  return OpenForWriting(which, &key) && key.SetBinaryValue(name, data, size);
}

bool DeleteValue(AgentKey which, const wchar_t* name) {
  CRegistryVeyra key;
  return OpenFor(RegistryAccess::kFull, which, &key) && key.DeleteValue(name);
}

}  // namespace wexpol

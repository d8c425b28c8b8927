#include "wexpol/devicecare/brand.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <iterator>
#include <mutex>
#include <string_view>

#include "wexpol/platform/agent_registry.h"
#include "wexpol/platform/shared_memory.h"

namespace wexpol {
namespace {

constexpr wchar_t kBlockName[] = L"Global\\LumoraBrandInfo";
constexpr wchar_t kStandardProductName[] = L"Corvane Agent";
constexpr std::int32_t kFirstQelId = 5;
constexpr std::int32_t kLastQelId = 6;

// The layout that all programs of the agent share.
struct BrandBlock {
  std::int32_t brand_id = 0;
  char16_t product_name[80] = {};  // not terminated when all are in use
  std::uint8_t slack[4] = {};
};
static_assert(sizeof(BrandBlock) == 168);

struct SharedBlock {
  std::mutex lock;
  NamedMapping mapping;
};

SharedBlock& Shared() {
  static SharedBlock shared;
  return shared;
}

// The id as the processes share it: whoever sees it sees the name that was written before it.
std::atomic_ref<std::int32_t> SharedId(void* memory) {
  static_assert(std::atomic_ref<std::int32_t>::is_always_lock_free);
  return std::atomic_ref(static_cast<BrandBlock*>(memory)->brand_id);
}

// The id comes last: a process that looks in between sees no brand, never half a name with one.
void Fill(void* memory) {
  std::wstring name;
  if (!ReadText(AgentKey::kClass, L"PN", &name)) name = kStandardProductName;
  std::uint32_t brand_id = 0;
  ReadDword(AgentKey::kAgent, L"BID", &brand_id);

  BrandBlock block;
  name.resize(std::min(name.size(), std::size(block.product_name)));
  std::transform(name.begin(), name.end(), block.product_name,
                 [](wchar_t c) { return static_cast<char16_t>(c); });
  std::memcpy(memory, &block, sizeof block);
  SharedId(memory).store(static_cast<std::int32_t>(brand_id), std::memory_order_release);
}

// Every process of the agent can write to the block: it is copied once and trusted in nothing.
BrandInfo Decode(void* memory) {
  const std::int32_t brand_id = SharedId(memory).load(std::memory_order_acquire);
  BrandBlock block;
  std::memcpy(&block, memory, sizeof block);
  std::u16string_view name(block.product_name, std::size(block.product_name));
  name = name.substr(0, name.find(u'\0'));
  return {brand_id, std::wstring(name.begin(), name.end())};
}

}  // namespace

std::optional<BrandInfo> ReadBrandInfo() {
  const std::lock_guard<std::mutex> guard(Shared().lock);
  NamedMapping& mapping = Shared().mapping;
  if (!mapping.data()) {
    mapping = NamedMapping(kBlockName, sizeof(BrandBlock));
    if (!mapping.data()) return std::nullopt;
    if (mapping.created()) Fill(mapping.data());
  }
  return Decode(mapping.data());
}

Brand BrandOf(const std::optional<BrandInfo>& info) {
  const bool qel = info && info->brand_id >= kFirstQelId && info->brand_id <= kLastQelId;
  return qel ? Brand::kQel : Brand::kZentra;
}

void ReleaseBrandForTesting() {
  const std::lock_guard<std::mutex> guard(Shared().lock);
  Shared().mapping = NamedMapping();
}

}  // namespace wexpol

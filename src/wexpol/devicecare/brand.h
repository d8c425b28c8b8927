// The brand under which the agent is installed, shared by all of its processes.

#ifndef WEXPOL_DEVICECARE_BRAND_H_
#define WEXPOL_DEVICECARE_BRAND_H_

#include <cstdint>
#include <optional>
#include <string>

namespace wexpol {

enum class Brand { kZentra, kQel };

struct BrandInfo {
  std::int32_t brand_id;
  std::wstring product_name;
};

// What the shared block says. The first process to ask creates the block and fills it from the
// registry; every other one takes it as it is, which is id 0 while the first is still filling it.
// Nothing when there is no block to be had; the next call tries again.
std::optional<BrandInfo> ReadBrandInfo();

// The brand of an id; anything unknown is Zentra.
Brand BrandOf(const std::optional<BrandInfo>& info);

// Lets go of the block that this process holds.
void ReleaseBrandForTesting();

}  // namespace wexpol

#endif  // WEXPOL_DEVICECARE_BRAND_H_

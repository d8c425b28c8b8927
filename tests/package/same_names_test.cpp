// A host with headers and namespaces of its own that are named like the library's rooms.

#include <gtest/gtest.h>

#include "platform/export.h"
#include "records/record.h"
#include "services/service.h"

namespace platform {
class Registry {};
}  // namespace platform
namespace records {
using Text = int;
struct Table {};
}  // namespace records
namespace services {
struct Service {};
}  // namespace services

#include <wexpol.h>

TEST(SameNames, TheHostsOwnAreNotTheLibrarys) {
  HostsOwn* own = nullptr;
  const records::Text text = 7;
  const wexpol::Text name("seven");
  EXPECT_EQ(own, nullptr);
  EXPECT_EQ(text, 7);
  EXPECT_STREQ(name, "seven");
}

#include "wexpol/platform/firmware.h"

#include <fstream>
#include <iterator>

namespace wexpol {

Bytes ReadSmbiosTable() {
  std::ifstream table("/sys/firmware/dmi/tables/DMI", std::ios::binary);  // for root only
  const std::istreambuf_iterator<char> begin(table), end;
  return {begin, end};
}

}  // namespace wexpol

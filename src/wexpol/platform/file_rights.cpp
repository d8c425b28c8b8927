#include "wexpol/platform/file_rights.h"

namespace wexpol {
namespace {

// Owned by the administrators, nothing inherited from above; full access for the system and them,
// handed down to what is made inside.
constexpr wchar_t kOwners[] = L"O:BAD:PAI(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)";

}  // namespace

std::wstring PrivateFolderDescriptor(const std::wstring& readers) {
  if (readers.empty()) return kOwners;
  return kOwners + (L"(A;OICI;0x1200a9;;;" + readers + L")");  // reads, and enters folders
}

std::wstring LogFolderDescriptor() {
  // Authenticated users change and delete; the label lets processes of low integrity do so.
  return kOwners + std::wstring(L"(A;OICI;0x1301bf;;;AU)S:(ML;OICI;NW;;;LW)");
}

}  // namespace wexpol

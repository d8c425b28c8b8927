#include "wexpol/platform/security.h"

#include <windows.h>
#include <sddl.h>

#include "wexpol/platform/win32/handle.h"

CSecAttrib::CSecAttrib() {
  constexpr const wchar_t* kDescriptors[] = {
      L"D:(A;;GA;;;AU)(A;;GA;;;SY)(A;;GA;;;BA)S:(ML;;NW;;;LW)",
      L"D:(A;;GA;;;AU)(A;;GA;;;SY)(A;;GA;;;BA)",  // for systems without integrity labels
  };
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  for (const wchar_t* text : kDescriptors) {
    if (::ConvertStringSecurityDescriptorToSecurityDescriptorW(text, SDDL_REVISION_1, &descriptor,
                                                               nullptr)) {
      break;
    }
  }
  descriptor_ = wexpol::OwnMemory(descriptor);
  if (!descriptor) return;
  attributes_ = wexpol::OwnMemory(::LocalAlloc(LPTR, sizeof(SECURITY_ATTRIBUTES)));
  if (auto* attributes = static_cast<SECURITY_ATTRIBUTES*>(attributes_.get())) {
    attributes->nLength = sizeof *attributes;
    attributes->lpSecurityDescriptor = descriptor;
  }
}

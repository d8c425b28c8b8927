// The security attributes of objects that processes of every integrity level share.

#ifndef WEXPOL_PLATFORM_SECURITY_H_
#define WEXPOL_PLATFORM_SECURITY_H_

#include "wexpol/platform/scoped_handle.h"

// Authenticated users, the system and administrators have full access; the label is low integrity.
class CSecAttrib {
 public:
  CSecAttrib();

  // The system's SECURITY_ATTRIBUTES, owned by this object; null where the system has none or
  // refused them, which gives an object its default protection.
  void* get() const { return attributes_.get(); }

 private:
  wexpol::ScopedHandle descriptor_;
  wexpol::ScopedHandle attributes_;
};

#endif  // WEXPOL_PLATFORM_SECURITY_H_

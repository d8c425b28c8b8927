#include "wexpol/records/target.h"

#include "wexpol/platform/text.h"

namespace wexpol {

void Target::Text(const wchar_t* text) {
  if (!column_) return statement_->Bind(index_, text);
  if (!text) return Null();
  CopyOf(WideToUtf8(text));
}

}  // namespace wexpol

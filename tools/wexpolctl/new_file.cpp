#include "tools/wexpolctl/new_file.h"

#include "tools/wexpolctl/command.h"
#include "tools/wexpolctl/files.h"
#include "wexpol/platform/file_rights.h"
#include "wexpol/platform/files.h"
#include "wexpol/platform/text.h"

namespace wexpolctl {

void RequireNew(const std::wstring& path) {
  if (!wexpol::FileExists(path)) return;
  throw Failure{kFinding, "There already is a file " + wexpol::WideToUtf8(path) + ".",
                "Nothing is overwritten: name another."};
}

void WriteNewFile(const std::wstring& path, const std::string& text) {
  RequireNew(path);
  const bool made = wexpol::MakeOwnFile(path);
  if (made && WriteFile(path, text)) return;
  if (made) wexpol::RemoveFile(path);
  throw Failure{kFinding, wexpol::WideToUtf8(path) + " cannot be written.",
                "Check the path, the space on the disk and whether this user may write there."};
}

}  // namespace wexpolctl

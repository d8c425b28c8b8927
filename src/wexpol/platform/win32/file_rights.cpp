#include "wexpol/platform/file_rights.h"

#include <windows.h>
#include <aclapi.h>
#include <sddl.h>

#include <vector>

#include "wexpol/platform/files.h"
#include "wexpol/platform/win32/handle.h"

namespace wexpol {
namespace {

// The SID of a group as text; empty when it is not known.
std::wstring SidOf(const std::wstring& group) {
  BYTE sid[SECURITY_MAX_SID_SIZE];
  DWORD sid_size = sizeof sid;
  wchar_t domain[256];
  DWORD domain_size = 256;
  SID_NAME_USE kind;
  wchar_t* text = nullptr;
  if (!::LookupAccountNameW(nullptr, group.c_str(), sid, &sid_size, domain, &domain_size, &kind) ||
      !::ConvertSidToStringSidW(sid, &text)) {
    return {};
  }
  const ScopedHandle owner = OwnMemory(text);
  return text;
}

// The SID of the user who this process runs as, as text; empty when the system does not tell.
std::wstring OwnSid() {
  HANDLE token = nullptr;
  if (!::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &token)) return {};
  const ScopedHandle token_owner = Own(token);
  alignas(TOKEN_USER) BYTE user[sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE];
  DWORD size = 0;
  wchar_t* text = nullptr;
  if (!::GetTokenInformation(token, TokenUser, user, sizeof user, &size) ||
      !::ConvertSidToStringSidW(reinterpret_cast<TOKEN_USER*>(user)->User.Sid, &text)) {
    return {};
  }
  const ScopedHandle text_owner = OwnMemory(text);
  return text;
}

bool CreateNewFile(const std::wstring& path, SECURITY_ATTRIBUTES* attributes) {
  return Own(::CreateFileW(path.c_str(), GENERIC_WRITE, 0, attributes, CREATE_NEW,
                           FILE_ATTRIBUTE_NORMAL, nullptr)) != nullptr;
}

bool GiveRights(const std::wstring& path, PSECURITY_DESCRIPTOR descriptor) {
  SECURITY_INFORMATION parts = DACL_SECURITY_INFORMATION | PROTECTED_DACL_SECURITY_INFORMATION;
  BOOL present = FALSE, defaulted = FALSE;
  ACL *dacl = nullptr, *label = nullptr;
  PSID owner = nullptr;
  ::GetSecurityDescriptorDacl(descriptor, &present, &dacl, &defaulted);
  ::GetSecurityDescriptorOwner(descriptor, &owner, &defaulted);
  if (owner) parts |= OWNER_SECURITY_INFORMATION;
  ::GetSecurityDescriptorSacl(descriptor, &present, &label, &defaulted);
  if (present && label) parts |= LABEL_SECURITY_INFORMATION;
  std::wstring name = path;  // the call takes it writable
  return ::SetNamedSecurityInfoW(name.data(), SE_FILE_OBJECT, parts, owner, nullptr, dacl, label) ==
         ERROR_SUCCESS;
}

void MakeFoldersAbove(const std::wstring& folder) {
  for (std::size_t at = folder.find(L'\\'); at != folder.npos; at = folder.find(L'\\', at + 1)) {
    ::CreateDirectoryW(folder.substr(0, at).c_str(), nullptr);
  }
}

// Null when it is no text of rights.
ScopedHandle Parsed(const std::wstring& rights) {
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  const bool parsed = ::ConvertStringSecurityDescriptorToSecurityDescriptorW(
      rights.c_str(), SDDL_REVISION_1, &descriptor, nullptr);
  return OwnMemory(parsed ? descriptor : nullptr);
}

bool MakeFolder(const std::wstring& folder, const std::wstring& rights) {
  const ScopedHandle descriptor = Parsed(rights);
  if (descriptor == nullptr) return false;
  MakeFoldersAbove(folder);
  // Made with its rights, so that nobody gets in between.
  SECURITY_ATTRIBUTES attributes = {sizeof attributes, descriptor.get(), FALSE};
  if (!::CreateDirectoryW(folder.c_str(), &attributes) &&
      ::GetLastError() != ERROR_ALREADY_EXISTS) {
    return false;
  }
  return GiveRights(folder, descriptor.get());
}

}  // namespace

bool MakePrivateFolder(const std::wstring& folder, const std::wstring& readers) {
  const std::wstring sid = readers.empty() ? L"" : SidOf(readers);
  return sid.empty() == readers.empty() && MakeFolder(folder, PrivateFolderDescriptor(sid));
}

bool MakeLogFolder(const std::wstring& folder) { return MakeFolder(folder, LogFolderDescriptor()); }

bool MakePrivateFile(const std::wstring& path) {
  // The system hands the folder's rights down.
  return CreateNewFile(path, nullptr);
}

bool MakeOwnFile(const std::wstring& path) {
  const std::wstring sid = OwnSid();
  const ScopedHandle descriptor = Parsed(L"D:P(A;;FA;;;" + sid + L")");
  SECURITY_ATTRIBUTES attributes = {sizeof attributes, descriptor.get(), FALSE};
  return descriptor != nullptr && CreateNewFile(path, &attributes);
}

bool TakeRights(const std::wstring& from, const std::wstring& to) {
  DWORD size = 0;
  ::GetFileSecurityW(from.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
  std::vector<BYTE> descriptor(size);
  return size > 0 &&
         ::GetFileSecurityW(from.c_str(), DACL_SECURITY_INFORMATION, descriptor.data(), size,
                            &size) &&
         ::SetFileSecurityW(to.c_str(), DACL_SECURITY_INFORMATION, descriptor.data());
}

}  // namespace wexpol

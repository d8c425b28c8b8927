#include "wexpol/platform/diagnostic_log.h"

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <mutex>
#include <optional>

#include "wexpol/platform/agent_registry.h"
#include "wexpol/platform/clock.h"
#include "wexpol/platform/device_info.h"
#include "wexpol/platform/file_paths.h"
#include "wexpol/platform/files.h"
#include "wexpol/platform/look_only.h"
#include "wexpol/platform/named_mutex.h"
#include "wexpol/platform/system_types.h"
#include "wexpol/platform/testing.h"
#include "wexpol/platform/text.h"
#include "wexpol/platform/version.h"

namespace wexpol {
namespace {

constexpr wchar_t kMutexName[] = L"Global\\Veyra_Log";
constexpr std::uint32_t kMutexTimeoutMs = 2000;
constexpr std::uint64_t kThreshold = 0x500000;
constexpr std::uint64_t kDebugThreshold = 0xA00000;
constexpr std::size_t kColumnWidth = 8;

// What is computed once per process.
struct Settings {
  std::wstring path;
  std::uint64_t threshold;
  std::string columns;  // user and program, with the blank between
};

std::mutex g_settings_lock;
std::optional<Settings> g_settings;
std::uint64_t g_threshold_for_testing = 0;

std::uint64_t ConfiguredThreshold() {
  std::uint32_t debug = 0;
  ReadDword(AgentKey::kAgent, L"EnableLogLevelDebug", &debug);
  return debug != 0 ? kDebugThreshold : kThreshold;
}

Settings GetSettings() {
  const std::lock_guard<std::mutex> guard(g_settings_lock);
  if (!g_settings) {
    const std::wstring columns =
        LogColumn(CurrentUserName()) + L' ' + ProgramColumn(ExecutablePath());
    g_settings = {CFilePaths::GetLocationLogFile(),
                  g_threshold_for_testing ? g_threshold_for_testing : ConfiguredThreshold(),
                  WideToUtf8(columns)};
  }
  return *g_settings;
}

WEXPOL_PRINTF(1, 0) std::string FormatList(const char* format, std::va_list arguments) {
  std::va_list measured;
  va_copy(measured, arguments);
  const int size = std::vsnprintf(nullptr, 0, format, measured);
  va_end(measured);
  if (size <= 0) return {};
  std::string text(static_cast<std::size_t>(size), '\0');
  std::vsnprintf(text.data(), text.size() + 1, format, arguments);
  return text;
}

WEXPOL_PRINTF(1, 2) std::string Format(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  std::string text = FormatList(format, arguments);
  va_end(arguments);
  return text;
}

void PutAsideWhenLarge(const Settings& settings) {
  if (FileSize(settings.path).value_or(0) <= settings.threshold) return;
  const std::wstring old = settings.path + L".old.log";
  RemoveFile(old);
  RenameFile(settings.path, old);
}

std::string NewFileLine() {
  long device_id = -1;
  CDeviceInfo::GetDeviceID(&device_id);
  return Format("ClientVersion = %s, DeviceID = %ld\n", WEXPOL_VERSION, device_id);
}

std::string LineHead(const Settings& settings) {
  const SYSTEMTIME now = NowLocal();
  return Format("%02d/%02d/%02d %02d:%02d:%02d %s - WexPol > ", now.wMonth, now.wDay,
                now.wYear % 100, now.wHour, now.wMinute, now.wSecond, settings.columns.c_str());
}

bool WriteLine(const std::string& message) {
  if (OnlyLooks()) return false;
  const Settings settings = GetSettings();
  NamedMutex mutex(kMutexName);
  if (mutex.Wait(kMutexTimeoutMs) != NamedMutex::WaitResult::kObtained) return false;

  PutAsideWhenLarge(settings);
  const bool is_new = FileSize(settings.path).value_or(0) == 0;
  const File file = OpenForAppend(settings.path);
  if (!file) return false;
  const std::string text =
      (is_new ? NewFileLine() : std::string()) + LineHead(settings) + message + '\n';
  return std::fwrite(text.data(), 1, text.size(), file.get()) == text.size() &&
         std::fflush(file.get()) == 0;
}

}  // namespace

bool LogMessage(const char* format, ...) noexcept {
  std::va_list arguments;
  va_start(arguments, format);
  bool written = false;
  try {
    written = WriteLine(FormatList(format, arguments));
  } catch (...) {
    // Out of memory: the line is dropped like one that cannot be written.
  }
  va_end(arguments);
  return written;
}

std::wstring LogColumn(std::wstring text) {
  text.resize(kColumnWidth, L' ');
  return text;
}

std::wstring ProgramColumn(const std::wstring& path) {
  const std::wstring name = FileNameOf(path);
  return LogColumn(name.substr(0, name.rfind(L'.')));
}

void ResetLogForTesting(std::uint64_t threshold) {
  const std::lock_guard<std::mutex> guard(g_settings_lock);
  g_settings.reset();
  g_threshold_for_testing = threshold;
}

}  // namespace wexpol

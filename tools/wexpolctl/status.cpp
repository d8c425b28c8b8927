// wexpolctl status: the file, its backup, the log and this device at a glance.

#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/database.h"
#include "tools/wexpolctl/files.h"
#include "wexpol/platform/device_info.h"
#include "wexpol/platform/file_paths.h"
#include "wexpol/platform/files.h"
#include "wexpol/records/query.h"

namespace wexpolctl {
namespace {

Cell SizeOf(const std::wstring& path) {
  const auto size = wexpol::FileSize(path);
  return size ? Size(*size) : Nothing();
}

// What can be told without opening the database.
void ReportSurroundings(const Call& call) {
  Report& report = call.report;
  const std::wstring backup = BackupPathOf(call.database);
  const auto age = AgeOf(backup);
  const std::wstring log = CFilePaths::GetLocationLogFile();
  long device = 0;
  const bool stored = CDeviceInfo::GetDeviceID(&device);
  report.Add("file", Text(call.database));
  report.Add("size", SizeOf(call.database));
  report.Add("write-ahead log size", SizeOf(call.database + L"-wal"));
  report.Add("backup", Text(backup));
  report.Add("backup size", SizeOf(backup));
  report.Add("backup age", age ? Duration(*age) : Nothing());
  report.Add("log", Text(log));
  report.Add("log size", SizeOf(log));
  report.Add("stored device id", stored ? Number(device) : Nothing());
}

ExitCode Status(Call& call) {
  ReportSurroundings(call);
  Database database(call.database);
  std::int64_t rows = 0;
  const auto tables = TableNames(database.handle());
  for (const std::string& table : tables) rows += CountRows(database.handle(), table).value_or(0);
  const wexpol::Text mode = wexpol::QueryText(database.handle(), "PRAGMA journal_mode");
  call.report.Add("journal mode", Text(mode.view()));
  call.report.Add("tables", Number(static_cast<std::int64_t>(tables.size())));
  call.report.Add("rows", Number(rows));
  return kDone;
}

}  // namespace

Command StatusCommand() {
  return {"status", "Show the file, its backup, the log and this device at a glance", {}, &Status};
}

}  // namespace wexpolctl

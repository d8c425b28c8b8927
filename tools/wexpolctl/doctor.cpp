// wexpolctl doctor: everything that can be wrong on a machine, with what to do about it.

#include <functional>

#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/database.h"
#include "tools/wexpolctl/files.h"
#include "tools/wexpolctl/restore.h"
#include "tools/wexpolctl/tables.h"
#include "wexpol/devicecare/brand.h"
#include "wexpol/identity/device.h"
#include "wexpol/platform/agent_registry.h"
#include "wexpol/platform/file_paths.h"
#include "wexpol/platform/files.h"
#include "wexpol/platform/text.h"

namespace wexpolctl {
namespace {

constexpr std::int64_t kOldBackup = std::int64_t{7} * 86400;

// Looks at one thing after the other; what cannot be looked at any more is left out.
class Examination {
 public:
  explicit Examination(std::wstring database) : path_(std::move(database)) {}

  void Run() {
    LookAtSideFiles();  // An open would take them in.
    LookAtFile();
    LookAtBackup();
    LookAtBrand();
    LookAtLog();
    LookAtRegistry();
  }

  // Whether the file itself is lost and its backup has to take its place.
  bool file_is_bad() const { return file_is_bad_; }
  bool all_well() const { return all_well_; }

  void Print(Report& report) const {
    Listing& listing = report.AddListing("checks", {"check", "well", "what", "what to do"}, false);
    for (const Line& line : lines_) {
      listing.Add({Text(line.check), Flag(line.todo.empty()), Text(line.what),
                   line.todo.empty() ? Nothing() : Text(line.todo)});
    }
  }

 private:
  struct Line {
    std::string check;
    std::string what;
    std::string todo;
  };

  void Note(const char* check, std::string what, std::string todo = "") {
    all_well_ = all_well_ && todo.empty();
    lines_.push_back({check, std::move(what), std::move(todo)});
  }

  void LookAtSideFiles() {
    if (wexpol::FileExists(path_ + L"-journal")) {
      return Note("side files", "a rollback journal lies beside the file",
                  "stop the agent, then open the file once: wexpolctl check");
    }
    const auto log = wexpol::FileSize(path_ + L"-wal");
    Note("side files", log ? "in use: write-ahead log of " + Size(*log).text : "none");
  }

  void LookAtFile() {
    try {
      Database database(path_);
      Note("file and key", wexpol::WideToUtf8(path_) + ", readable");
      const auto findings = IntegrityFindings(database.handle());
      file_is_bad_ = !findings.empty();
      if (file_is_bad_) return Note("integrity", findings.front(), "wexpolctl doctor --repair");
      Note("integrity", "sound");
      LookAtTables(database.handle());
      LookAtIdentity(database.handle());
    } catch (const LostFile& failure) {
      file_is_bad_ = true;
      const bool can_repair = wexpol::FileExists(BackupPathOf(path_));
      Note("file and key", failure.problem,
           can_repair ? "wexpolctl doctor --repair" : "wexpolctl init --force, then sync");
    } catch (const Failure& failure) {
      Note("file and key", failure.problem, failure.next);
    }
  }

  void LookAtTables(sqlite3* db) {
    std::string differing;
    for (const SyncTable& table : SyncTables()) {
      const auto names = ColumnNames(db, table.name());
      const wexpol::Columns& columns = table.record_class->table().columns();
      if (names.size() < columns.size() ||
          !std::equal(columns.begin(), columns.end(), names.begin(),
                      [](const auto& column, const auto& name) { return column.name == name; })) {
        differing += (differing.empty() ? "" : ", ") + std::string(table.name());
      }
    }
    if (differing.empty()) return Note("tables", "as this version expects them");
    Note("tables", "missing or of another make: " + differing, "wexpolctl init --force, then sync");
  }

  void LookAtIdentity(sqlite3* db) {
    CDevice device;
    const auto id = LocalDeviceId(db);
    if (!id || !device.SpecialGetFromDB(db, *id)) {
      return Note("device identity", "this computer is none of the devices",
                  "synchronise the devices; see wexpolctl identity");
    }
    Note("device identity", "device " + std::to_string(device.id));
  }

  void LookAtBackup() {
    const std::wstring backup = BackupPathOf(path_);
    const auto age = AgeOf(backup);
    if (!age) return Note("backup", "none", "wexpolctl backup");
    Note("backup", Duration(*age).text + " old", *age > kOldBackup ? "wexpolctl backup" : "");
  }

  void LookAtBrand() {
    const auto brand = wexpol::ReadBrandInfo();
    if (!brand) return Note("brand", "no process of the agent shares it now");
    Note("brand",
         "id " + std::to_string(brand->brand_id) + ", " + wexpol::WideToUtf8(brand->product_name));
  }

  void LookAtLog() {
    const std::wstring path = CFilePaths::GetLocationLogFile();
    const std::string shown = wexpol::WideToUtf8(path);
    const auto size = wexpol::FileSize(path);
    if (!size) return Note("log", shown + ", not begun yet");  // Opening it would begin it.
    if (!wexpol::OpenForAppend(path)) {
      return Note("log", shown + " cannot be written", "check the rights of the folder");
    }
    Note("log", shown + ", " + Size(*size).text);
  }

  void LookAtRegistry() {
    const std::wstring path = wexpol::AgentKeyPath();
    CRegistryVeyra key;
    const bool open = key.Open(path, wexpol::RegistryAccess::kQuery,
                               wexpol::RegistryView::k32Bit) == wexpol::RegistryStatus::kOk;
    Note("registry", wexpol::WideToUtf8(path) + (open ? "" : " is missing"),
         open ? "" : "the agent is not installed here; see --root for a folder of its own");
  }

  std::wstring path_;
  std::vector<Line> lines_;
  bool file_is_bad_ = false;
  bool all_well_ = true;
};

ExitCode Doctor(Call& call) {
  Examination examination(call.database);
  examination.Run();
  if (examination.file_is_bad() && call.options.Has("--repair")) {
    const std::wstring aside = RestoreDatabase(call.database, BackupPathOf(call.database));
    call.report.Add("repaired", Text("the backup took the file's place"));
    call.report.Add("former file", aside.empty() ? Nothing() : Text(aside));
    examination = Examination(call.database);
    examination.Run();
  }
  examination.Print(call.report);
  if (examination.all_well()) return kDone;
  throw Failure{kFinding, "Not all is well.", "The last column says what to do."};
}

}  // namespace

Command DoctorCommand() {
  return {"doctor",
          "Examine file, key, backup, identity, log and registry",
          {{"--repair", Option::kFlag, "Put a bad file aside and the backup in its place", false,
            Effect::kChanges}},
          &Doctor};
}

}  // namespace wexpolctl

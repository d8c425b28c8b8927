// wexpolctl doctor: everything that can be wrong on a machine, with what to do about it.

#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/database.h"
#include "tools/wexpolctl/files.h"
#include "tools/wexpolctl/restore.h"
#include "tools/wexpolctl/schema_check.h"
#include "wexpol/devicecare/brand.h"
#include "wexpol/identity/device.h"
#include "wexpol/platform/agent_registry.h"
#include "wexpol/platform/file_paths.h"
#include "wexpol/platform/files.h"
#include "wexpol/platform/text.h"

namespace wexpolctl {
namespace {

constexpr std::int64_t kOldBackup = std::int64_t{7} * 86400;

std::string Joined(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts) joined += (joined.empty() ? "" : "; ") + text;
  return joined;
}

// Looks at one thing after the other; what cannot be looked at any more is left out.
class Examination {
 public:
  explicit Examination(const Call& call) : path_(call.database), tool_(call.tool) {}

  void Run() {
    LookAtSideFiles();
    LookAtBackup();  // What to do about a bad file depends on it.
    LookAtFile();
    LookAtBrand();
    LookAtLog();
    LookAtRegistry();
  }

  // Whether the file itself is lost and its backup has to take its place.
  bool file_is_bad() const { return file_is_bad_; }
  bool all_well() const { return all_well_; }

  void Print(Report& report) const {
    Listing& listing = report.AddListing("checks", {"check", "well", "what", "what to do"});
    for (const Line& line : lines_) {
      listing.Add({Text(line.check), line.todo.empty() ? Flag(true) : Bad(Flag(false)),
                   Text(line.what),
                   line.todo.empty() ? Nothing() : Text(AdviceFor(tool_, line.todo))});
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
      const auto findings = Findings(database.handle());
      file_is_bad_ = !findings.empty();
      Note("integrity", file_is_bad_ ? Joined(findings) : "sound",
           file_is_bad_ ? CureOfBadFile() : "");
      LookAtTables(database.handle());
      if (!file_is_bad_) LookAtIdentity(database.handle());
    } catch (const LostFile& failure) {
      file_is_bad_ = true;
      Note("file and key", failure.problem, CureOfBadFile());
    } catch (const Failure& failure) {
      Note("file and key", failure.problem, failure.next);
    }
  }

  std::string CureOfBadFile() const {
    return backup_is_good_ ? "wexpolctl doctor --repair" : "wexpolctl init --force, then sync";
  }

  void LookAtTables(sqlite3* db) {
    const SchemaDifferences differences = CompareWithSchema(db);
    if (!differences.faults.empty()) {
      Note("tables", Joined(differences.faults),
           backup_is_good_ ? "wexpolctl restore" : "wexpolctl init --force, then sync");
    } else if (!differences.notes.empty()) {
      Note("tables", "as this version expects them, but slow: " + Joined(differences.notes));
    } else {
      Note("tables", "as this version expects them");
    }
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
    const std::string fault = FaultOfBackup(backup);
    backup_is_good_ = fault.empty();
    if (!backup_is_good_) return Note("backup", fault, "wexpolctl backup, when the file is sound");
    Note("backup", Duration(*age).text + " old, sound",
         *age > kOldBackup ? "wexpolctl backup" : "");
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
  std::string tool_;
  std::vector<Line> lines_;
  bool file_is_bad_ = false;
  bool backup_is_good_ = false;
  bool all_well_ = true;
};

ExitCode Doctor(Call& call) {
  Examination examination(call);
  examination.Run();
  if (examination.file_is_bad() && call.options.Has("--repair")) {
    const std::wstring aside = RestoreDatabase(call.database, BackupPathOf(call.database));
    call.report.Add("repaired", Text("the backup took the file's place"));
    call.report.Add("former file", aside.empty() ? Nothing() : Text(aside));
    examination = Examination(call);
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

// wexpolctl init: makes the encrypted file with its empty tables.

#include <string>

#include "tools/provision/provision.h"
#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/database.h"
#include "tools/wexpolctl/files.h"
#include "wexpol/platform/files.h"
#include "wexpol/platform/text.h"

namespace wexpolctl {
namespace {

ExitCode Init(Call& call) {
  const std::string shown = wexpol::WideToUtf8(call.database);
  if (wexpol::FileExists(call.database) && !call.options.Has("--force")) {
    throw Failure{
        kFinding, "There already is a database at " + shown + ".",
        "Look at it with 'wexpolctl status', or replace it, losing its rows, with --force."};
  }
  std::string error;
  if (!wexpol::PrepareFolders(call.database, L"", error)) {
    throw Failure{kCannotOpen, shown + " cannot be made: " + error + ".",
                  "Check the path and whether this user may write there."};
  }

  // Made beside its place, so that a file that was there is lost only to a complete one.
  const std::wstring made = call.database + L".new";
  wexpol::RemoveFile(made);
  if (!wexpol::CreateDatabase(made, error)) {
    throw Failure{kCannotOpen, shown + " cannot be made: " + error + ".",
                  "Check the path and whether this user may write there."};
  }
  if (!MoveDatabase(made, call.database)) {
    wexpol::RemoveFile(made);
    throw Failure{kFinding, shown + " cannot be replaced.",
                  "Stop the processes that have it open first."};
  }
  Database database(call.database);
  call.report.Add("created", Text(shown));
  call.report.Add("tables",
                  Number(static_cast<std::int64_t>(TableNames(database.handle()).size())));
  call.report.AddLine("Next: fill it with 'wexpolctl sync FOLDER'.");
  return kDone;
}

}  // namespace

Command InitCommand() {
  return {"init",
          "Make the encrypted database with its empty tables",
          {{"--force", Option::kFlag, "Replace a database that is there; its rows are lost"}},
          &Init,
          Effect::kChanges};
}

}  // namespace wexpolctl

// wexpolctl init: makes the encrypted file with its empty tables.

#include <string>

#include "tools/provision/provision.h"
#include "tools/wexpolctl/commands.h"
#include "tools/wexpolctl/database.h"
#include "tools/wexpolctl/files.h"
#include "tools/wexpolctl/restore.h"
#include "wexpol/platform/files.h"
#include "wexpol/platform/text.h"

namespace wexpolctl {
namespace {

[[noreturn]] void ThrowCannotMake(const std::string& file, const std::string& reason) {
  throw Failure{kCannotOpen, file + " cannot be made: " + reason + ".",
                "Check the path and whether this user may write there."};
}

ExitCode Init(Call& call) {
  const std::string shown = wexpol::WideToUtf8(call.database);
  if (wexpol::FileExists(call.database) && !call.options.Has("--force")) {
    throw Failure{
        kFinding, "There already is a database at " + shown + ".",
        "Look at it with 'wexpolctl status', or replace it, losing its rows, with --force."};
  }
  RequireUnused(call.database);
  const std::wstring readers = wexpol::Utf8ToWide(call.options.Text("--access"));
  std::string error;
  if (!wexpol::PrepareFolders(call.database, readers, error)) ThrowCannotMake(shown, error);

  // Made beside its place, so that a file that was there is lost only to a complete one.
  const TemporaryDatabase made(call.database + L".new");
  if (!wexpol::CreateDatabase(made.path(), error)) ThrowCannotMake(shown, error);
  const TemporaryDatabase former(call.database + L".former");
  if (!ReplaceDatabase(made.path(), call.database, former.path())) {
    throw Failure{kFinding, shown + " cannot be replaced.",
                  "Stop the processes that have it open first."};
  }
  Database database(call.database);
  call.report.Add("created", Text(shown));
  call.report.Add("tables",
                  Number(static_cast<std::int64_t>(TableNames(database.handle()).size())));
  call.report.AddLine(AdviceFor(call.tool, "Next: fill it with 'wexpolctl sync FOLDER'."));
  return kDone;
}

}  // namespace

Command InitCommand() {
  return {"init",
          "Make the encrypted database with its empty tables",
          {{"--force", Option::kFlag, "Replace a database that is there; its rows are lost"},
           {"--access GROUP", Option::kText,
            "Let the users of this group read, where the folder is made or is the agent's own"}},
          &Init,
          Effect::kChanges,
          "init --access Operators"};
}

}  // namespace wexpolctl

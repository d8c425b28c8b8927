// The commands of the tool, each in a file of its own.

#ifndef WEXPOL_WEXPOLCTL_COMMANDS_H_
#define WEXPOL_WEXPOLCTL_COMMANDS_H_

#include "tools/wexpolctl/command.h"

namespace wexpolctl {

Command AlertsCommand();
Command BackupCommand();
Command BundleCommand();
Command CheckCommand();
Command CompletionCommand();
Command ConfigGetCommand();
Command ConfigListCommand();
Command DiffCommand();
Command DoctorCommand();
Command ExplainCommand();
Command ExportCommand();
Command FilterCheckCommand();
Command IdentityCommand();
Command InitCommand();
Command ListCommand();
Command LogCommand();
Command NextScanCommand();
Command OptionsCommand();
Command RestoreCommand();
Command ServicesCommand();
Command StatusCommand();
Command SyncCommand();
Command TablesCommand();
Command TimeCommand();
Command VersionsCommand();
Command WatchCommand();

// In the order of the help.
inline constexpr Command (*kCommands[])() = {
    // The file.
    &StatusCommand,
    &DoctorCommand,
    &InitCommand,
    &CheckCommand,
    &BackupCommand,
    &RestoreCommand,
    // What lies in it.
    &SyncCommand,
    &DiffCommand,
    &ExportCommand,
    &TablesCommand,
    &ListCommand,
    &VersionsCommand,
    // What the agent would be answered.
    &IdentityCommand,
    &ConfigGetCommand,
    &ConfigListCommand,
    &ExplainCommand,
    &FilterCheckCommand,
    &ServicesCommand,
    &OptionsCommand,
    &AlertsCommand,
    &NextScanCommand,
    &TimeCommand,
    // For support.
    &WatchCommand,
    &LogCommand,
    &BundleCommand,
    &CompletionCommand,
};

}  // namespace wexpolctl

#endif  // WEXPOL_WEXPOLCTL_COMMANDS_H_

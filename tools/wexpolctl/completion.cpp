// wexpolctl completion: what lets a shell complete the commands and their options.

#include "tools/wexpolctl/command_line.h"
#include "tools/wexpolctl/commands.h"

namespace wexpolctl {
namespace {

constexpr char kBashHead[] = R"(# Completes wexpolctl: source this, or put it into ~/.bashrc.
_wexpolctl() {
  local word=${COMP_WORDS[COMP_CWORD]} command= words i
  for ((i = 1; i < COMP_CWORD; i++)); do
    case ${COMP_WORDS[i]} in
      --db | --root) ((i++)) ;;
      -*) ;;
      *) command+="${COMP_WORDS[i]} " ;;
    esac
  done
  case $command in
)";
constexpr char kBashTail[] = R"(  esac
  COMPREPLY=($(compgen -W "$words" -- "$word"))
}
complete -o default -F _wexpolctl wexpolctl
)";

constexpr char kPowerShellHead[] = R"--(# Completes wexpolctl: put this into your $PROFILE.
Register-ArgumentCompleter -Native -CommandName wexpolctl, wexpolctl.exe -ScriptBlock {
  param($word, $line, $position)
  $known = @{
)--";
constexpr char kPowerShellTail[] = R"--(  }
  $given = @()
  $skip = $false
  foreach ($element in ($line.CommandElements | Select-Object -Skip 1)) {
    if ($skip) { $skip = $false }
    elseif ("$element" -in '--db', '--root') { $skip = $true }
    elseif ("$element" -notlike '-*') { $given += "$element" }
  }
  $command = ($given | Select-Object -First 2) -join ' '
  if (-not $known.ContainsKey($command)) { $command = "$($given | Select-Object -First 1)" }
  if (-not $known.ContainsKey($command)) { $command = '' }
  $known[$command] | Where-Object { $_ -like "$word*" } |
    ForEach-Object { [System.Management.Automation.CompletionResult]::new($_) }
}
)--";

std::string Joined(const std::vector<std::string>& words, const char* separator) {
  std::string joined;
  for (const std::string& word : words) joined.append(joined.empty() ? "" : separator).append(word);
  return joined;
}

std::string ForBash() {
  std::string script = kBashHead;
  for (const auto& [command, words] : WordsOfCommands()) {
    const std::string pattern = command.empty() ? "*" : "'" + command + " '*";
    script += "    " + pattern + ") words='" + Joined(words, " ") + "' ;;\n";
  }
  return script + kBashTail;
}

std::string ForPowerShell() {
  std::string script = kPowerShellHead;
  for (const auto& [command, words] : WordsOfCommands()) {
    script += "    '" + command + "' = '" + Joined(words, "', '") + "'\n";
  }
  return script + kPowerShellTail;
}

ExitCode Completion(Call& call) {
  const std::string shell = call.options.Text("SHELL");
  if (shell != "bash" && shell != "powershell") {
    throw Failure{kUsage, "There is no completion for '" + shell + "'.",
                  "Write 'wexpolctl completion bash' or 'wexpolctl completion powershell'."};
  }
  call.report.AddBlock("script", shell == "bash" ? ForBash() : ForPowerShell());
  return kDone;
}

}  // namespace

Command CompletionCommand() {
  return {"completion",
          "Print what lets a shell complete the commands and their options",
          {{"SHELL", Option::kText, "bash or powershell", true}},
          &Completion,
          Effect::kLooks,
          "completion bash"};
}

}  // namespace wexpolctl

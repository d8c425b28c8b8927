# shellcheck shell=bash disable=SC2034
# Shared by the scripts beside it: the project's folder, messages, the build of one preset.

# Every script works in the project's folder.
cd "$(dirname "${BASH_SOURCE[0]}")/.."
readonly ROOT=$PWD DEPS=$PWD/build/deps

say() { printf '== %s\n' "$*" >&2; }

die() {
  printf 'error: %s\n' "$*" >&2
  exit 1
}

# Runs a command with its output in build/logs/NAME.log, shown only when the command fails.
quietly() {
  local name=$1
  local log=build/logs/$name.log
  shift
  mkdir -p build/logs
  ("$@") >"$log" 2>&1 </dev/null || {
    tail -n 40 "$log" >&2
    die "$name failed; the whole output is in $log"
  }
}

# Configures a preset and builds it, or only the named targets of it.
build_preset() {
  local preset=$1
  shift
  say "building $preset"
  quietly "configure-$preset" cmake --preset "$preset"
  cmake --build --preset "$preset" ${1:+--target "$@"} >&2
}

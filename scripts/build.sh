#!/usr/bin/env bash
# build.sh PRESET TARGET...: configures a preset's tree where that is needed and builds the targets.
# Quiet: what the tools say goes to build/PRESET.log, and to standard error only after a failure.
# Two runs at the same time take turns.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

preset="$1"
shift
tree="build/$preset"
log="build/$preset.log"
mkdir -p build

exec 9>"build/$preset.lock"
flock 9

run() {
  if ! "$@" >>"$log" 2>&1 </dev/null 9>&-; then
    cat "$log" >&2
    echo "build.sh: failed: $*" >&2
    exit 1
  fi
}

: >"$log"
# A tree notices changes of the CMake files by itself, but not of the presets.
if [[ ! -f "$tree/build.ninja" || CMakePresets.json -nt "$tree/build.ninja" ]]; then
  run cmake --preset "$preset"
  touch "$tree/build.ninja"
fi
run cmake --build "$tree" --target "$@"

#!/usr/bin/env bash
# build.sh [-DNAME=VALUE] PRESET TARGET...: configures a preset's tree where that is needed, with the
# variable, which the tree then keeps, and builds the targets.
# Shows a bar on standard error; what the tools say goes to build/PRESET.log, and to standard error
# only after a failure. Two runs at the same time take turns.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

variable=()
if [[ "$1" == -D* ]]; then
  variable=("$1")
  shift
fi
preset="$1"
shift
tree="build/$preset"
log="build/$preset.log"
mkdir -p build

# Precompiled headers come from the cache too, and so does what another clone of the tree compiled.
export CCACHE_SLOPPINESS=pch_defines,time_macros CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=1

exec 9>"build/$preset.lock"
flock 9

fail() {
  cat "$log" >&2
  echo "build.sh: failed: $*" >&2
  exit 1
}

has_variable() {
  ((${#variable[@]} == 0)) ||
    sed 's/:[A-Z]*=/=/' "$tree/CMakeCache.txt" | grep -qxF -- "${variable#-D}"
}

: >"$log"
# A tree notices changes of the CMake files by itself, but not of the presets.
if [[ ! -f "$tree/build.ninja" || CMakePresets.json -nt "$tree/build.ninja" ]] || ! has_variable; then
  cmake --preset "$preset" "${variable[@]}" >>"$log" 2>&1 </dev/null 9>&- || fail "cmake --preset $preset"
  touch "$tree/build.ninja"
fi
cmake --build "$tree" --target "$@" 2>&1 </dev/null 9>&- | tee -a "$log" |
  scripts/progress.py "Building $preset" >/dev/null || fail "cmake --build $tree --target $*"

#!/usr/bin/env bash
# Installs the packages of the groups named that the machine lacks: build, workbench, check, bench,
# fuzz, lint.
# Says nothing on standard output, works without a terminal, as root or with sudo.
set -euo pipefail

packages_of() {
  case "$1" in
    build) echo g++ cmake ninja-build ccache python3 sqlite3 util-linux libcli11-dev nlohmann-json3-dev ;;
    workbench) echo libwxgtk3.2-dev libgtk-3-dev libx11-dev pkg-config librsvg2-common ;;
    check) echo libgtest-dev libgmock-dev mold clang-format-14 locales git libgmp-dev poppler-utils \
      xvfb xdotool openbox x11-xkb-utils ;;
    bench) echo libbenchmark-dev libabsl-dev libglib2.0-dev libsqlite3-dev qtbase5-dev pkg-config \
      libgmp-dev libfmt-dev libicu-dev libhowardhinnant-date-dev libspdlog-dev libctemplate-dev libwxgtk3.2-dev libgtk-3-dev \
      xvfb xauth ;;
    fuzz) echo clang-14 libclang-rt-14-dev libgmp-dev ;;
    lint) echo clang-tidy-14 libgtest-dev libgmock-dev ;;
    *)
      echo "install.sh: no group of packages named $1" >&2
      exit 2
      ;;
  esac
}

is_installed() {
  [[ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" == installed ]]
}

wanted=()
for group in "$@"; do
  packages="$(packages_of "$group")"
  for package in $packages; do wanted+=("$package"); done
done

if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
  echo "install.sh: this isn't a Debian system; it must have what these packages bring:" \
    "${wanted[*]}" >&2
  exit 0
fi

missing=()
for package in "${wanted[@]}"; do
  is_installed "$package" || missing+=("$package")
done
((${#missing[@]} > 0)) || exit 0

as_root=()
if ((EUID != 0)); then
  if ! command -v sudo >/dev/null; then
    echo "install.sh: not root and no sudo; please install: ${missing[*]}" >&2
    exit 1
  fi
  as_root=(sudo -n)
fi

echo "Installing ${missing[*]}" >&2
log="$(mktemp)"
trap 'rm -f "$log"' EXIT
run_apt() {
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y \
    -o DPkg::Lock::Timeout=300 "$@" >>"$log" 2>&1 </dev/null
}
# The package list of a machine that has installed something lately is mostly good enough.
if ! run_apt install --no-install-recommends "${missing[@]}"; then
  if ! { run_apt update && run_apt install --no-install-recommends "${missing[@]}"; }; then
    cat "$log" >&2
    exit 1
  fi
fi

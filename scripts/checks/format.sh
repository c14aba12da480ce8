#!/usr/bin/env bash
# Every C++ file is as clang-format leaves it.
set -euo pipefail
cd "${1:-.}"

files="$(find . \( -name .git -o -path ./build \) -prune -o \( -name '*.h' -o -name '*.cpp' \) -print)"
[[ -n "$files" ]] || exit 0

bad=0
while IFS= read -r file; do
  if ! difference="$(diff -u --label "$file" --label formatted "$file" \
    <(clang-format-14 --style=file "$file"))"; then
    echo "$difference"
    bad=1
  fi
done <<<"$files"
if ((bad)); then echo "format.sh: run clang-format-14 -i on the files above"; fi
exit "$bad"

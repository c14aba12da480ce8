#!/usr/bin/env bash
# run.sh DQTOOL DIRECTORY: makes the sales database in DIRECTORY and runs the query scripts on it,
# each by the sqlite3 client through `DQTOOL run`. Prints what DQTOOL prints; fails unless every
# script has come to its end.
set -euo pipefail
here="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
dqtool="$(realpath "$1")"
mkdir -p "$2"
directory="$(cd "$2" && pwd)"

# The login that the query scripts ask with; what dqtool prints has its password masked.
login="clerk/harvest-moon@ledger"

# The scripts lie beside the database, so that the client is given names and not paths.
rm -f "$directory/sales.db"
cp "$here"/*.sql "$here"/queries/*.sql "$directory"
python3 "$here/make_rows.py" "$login" >"$directory/rows.sql"

# client END OPTIONS ARGUMENTS: the client runs with the arguments and must have printed the line
# END last, which it does only if no statement failed.
client() {
  local end="$1" arguments="${*: -1}" options=("${@:2:$#-2}") output status=0
  output="$directory/output.txt"
  "$dqtool" run --dir "$directory" "${options[@]}" sqlite3 "-batch -bail $arguments" | tee "$output" ||
    status=$?
  if ((status != 0)) || [[ "$(tail -n 1 "$output")" != "$end" ]]; then
    echo "run.sh: a script has not come to its end" >&2
    exit 1
  fi
}

client "schema is made" 'sales.db ".read schema.sql"'
client "$(tail -n 1 "$directory/rows.sql" | cut -d ' ' -f 2-)" 'sales.db ".read rows.sql"'
for script in "$here"/queries/*.sql; do
  name="$(basename "$script")"
  client "end of $name" --keep-left \
    "-cmd \".parameter set :login '$login'\" sales.db \".read open_session.sql\" \".read $name\" \".print end of $name\""
done

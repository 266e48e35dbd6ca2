#!/bin/sh
# labsh-diff compares labsh with itself, each run in its own directory with
# its own addresses, pids and dates: on every assignment script and on every
# transcript case that gives the shell a script of its own, every line must
# come out equal.
#   selfcheck.sh LABSH_DIFF LABSH TESTS_DIR PRACTICAS_DIR
set -eu
diff=$1 shell=$2 tests=$3 practicas=$4
report=$(mktemp "${TMPDIR:-/tmp}/labsh-selfcheck.XXXXXX")
trap 'rm -f "$report"' EXIT
# shellcheck disable=SC2046
"$diff" "$practicas"/p*.txt $(find "$tests" -name '*.t' ! -path '*/labsh-diff/*' | sort) -- "$shell" > "$report" ||
    { cat "$report"; exit 1; }
grep -c '^== ' "$report"

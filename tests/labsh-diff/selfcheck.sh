#!/bin/sh
# labsh-diff compares labsh with itself, each run in its own directory with
# its own addresses, pids and dates: on every assignment script and on the
# input of every transcript case that needs nothing prepared and does not
# race with time, every line must come out equal.
#   selfcheck.sh LABSH_DIFF LABSH TESTS_DIR PRACTICAS_DIR
set -eu
diff=$1 shell=$2 tests=$3 practicas=$4
work=$(mktemp -d "${TMPDIR:-/tmp}/labsh-selfcheck.XXXXXX")
trap 'rm -rf "$work"' EXIT
# Cases with a setup, arguments, environment, another program or a
# requirement are left out, and so are the files of signals and terminals,
# whose output follows the time a signal arrives.
for t in $(find "$tests" -name '*.t' ! -path '*/signals/*' ! -path '*/labsh-diff/*' | sort); do
    awk -v out="$work/$(echo "$t" | tr / _)" '
        function flush() { if (n > 0 && plain && input != "") { f = out "." n ".txt"; printf "%s", input > f; close(f) } }
        /^=== / { flush(); n++; plain = 1; input = ""; sec = ""; next }
        /^--- / { sec = substr($0, 5); if (sec != "stdin" && sec != "stdout" && sec != "stderr" && sec != "merged" && sec != "status" && sec != "post" && sec != "post-stdout") plain = 0; next }
        sec == "stdin" { input = input $0 "\n" }
        END { flush() }' "$t"
done
# shellcheck disable=SC2046
"$diff" -j 2 "$practicas"/p*.txt $(ls "$work"/*.txt) -- "$shell" > "$work/report" || {
    grep -v '^= ' "$work/report" | grep -B2 -A12 '^X\|^-\|No se distinguen' | head -150
    exit 1
}
grep -c '^== ' "$work/report"

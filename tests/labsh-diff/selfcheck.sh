#!/bin/sh
# labsh-diff compares labsh with itself, each run in its own directory with
# its own addresses, pids and dates: on every assignment script and on the
# input of every transcript case that gives the shell its script directly,
# every line must come out equal.
#   selfcheck.sh LABSH_DIFF LABSH TESTS_DIR PRACTICAS_DIR
set -eu
diff=$1 shell=$2 tests=$3 practicas=$4
work=$(mktemp -d "${TMPDIR:-/tmp}/labsh-selfcheck.XXXXXX")
trap 'rm -rf "$work"' EXIT
"$diff" "$practicas"/p*.txt -- "$shell" > "$work/report" || { cat "$work/report"; exit 1; }
# Each case as files: its input, its setup and its arguments. Cases that
# take their input from a file of their own, set the environment, run
# another program or need something of the machine are left out.
for t in $(find "$tests" -name '*.t' ! -path '*/labsh-diff/*' | sort); do
    awk -v out="$work/$(echo "$t" | tr / _)" '
        function flush() {
            if (n == 0 || !plain || input == "") return
            f = out "." n; printf "%s", input > (f ".txt"); close(f ".txt")
            printf "%s", setup > (f ".setup"); close(f ".setup")
            printf "%s", args > (f ".args"); close(f ".args")
        }
        /^=== / { flush(); n++; plain = 1; input = setup = args = ""; sec = ""; next }
        /^--- / { sec = substr($0, 5)
                  if (sec ~ /^(stdin-file|env|program|requires|argv0|stdin-noeol)$/) plain = 0; next }
        sec == "stdin" { input = input $0 "\n" }
        sec == "setup" { setup = setup $0 "\n" }
        sec == "args" && $0 != "" { args = args " " $0 }
        END { flush() }' "$t"
done
status=0
for c in "$work"/*.txt; do
    [ "$c" != "$work/report" ] || continue
    b=${c%.txt}
    set -- "$c"
    [ -s "$b.setup" ] && set -- --setup "$b.setup" "$@"
    # shellcheck disable=SC2046
    "$diff" "$@" -- "$shell" $(cat "$b.args") > "$work/report" || { cat "$work/report"; status=1; }
done
exit $status

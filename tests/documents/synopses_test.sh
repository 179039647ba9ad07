#!/usr/bin/env bash
# synopses_test.sh README: the README shows each command of the program with exactly the options that its help lists.

set -euo pipefail
failures=0

# The options in a text, one a line, but for those that every command has.
options() {
    { grep -oE -- '--[a-z-]+' || true; } | grep -vxE -- '--(help|version)' | sort -u
}

commands=$(aveldoran --help | sed -n '/^Commands:/,/^$/s/^  *\([a-z]*\) .*/\1/p')
[[ -n $commands ]]
for command in $commands; do
    shown=$(awk -v begin="    aveldoran $command " '
        /^    aveldoran / { inside = index($0, begin) == 1 }
        /^$/ { inside = 0 }
        inside' "$1")
    listed=$(aveldoran "$command" --help | sed -n '/^Options:/,/^$/s/^  \(-h, \)\?\(--[a-z-]*\).*/\2/p')
    if [[ -z $shown ]] || ! diff <(options <<<"$shown") <(options <<<"$listed"); then
        printf '%s shows other options of %s than its help (>)\n' "$1" "$command"
        failures=$((failures + 1))
    fi
done
((failures == 0))

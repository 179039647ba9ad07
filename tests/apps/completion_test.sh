#!/usr/bin/env bash
# completion_test.sh COMPLETION PROGRAM: what bash offers for a begun command line. The last word is the one begun.

set -uo pipefail
library=/usr/share/bash-completion/bash_completion
[[ -f $library ]] || { echo "There is no $library"; exit 1; }
# shellcheck disable=SC1090
source "$library"
source "$1"
program=$2
failures=0

# offers EXPECTED WORD...: the offers, sorted and separated by blanks, are those expected.
offers() {
    local expected=$1 got
    shift
    COMP_WORDS=("$program" "$@") COMP_CWORD=$# COMP_LINE="$program $*" COMPREPLY=()
    COMP_POINT=${#COMP_LINE}
    _aveldoran
    got=$(printf '%s\n' "${COMPREPLY[@]}" | sort | paste -sd ' ')
    if [[ $got != "$expected" ]]; then
        printf 'For "%s": "%s", expected "%s"\n' "$*" "$got" "$expected"
        failures=$((failures + 1))
    fi
}

cd "$(mktemp -d)" || exit 1
touch trace.csv
offers 'channels' ch
offers 'help' he
offers 'waterfall waypoints' help w
offers '' help --
offers '--help --version' --
offers 'json text xml' channels --format ''
offers 'json' markers --format j
offers '--spacing' markers --sp
offers 'trace.csv' markers tr
offers 'trace.csv' markers --max 3 t

# Each command of the program is offered, and each of its options.
commands=$("$program" --help | sed -n '/^Commands:/,/^$/s/^  \([a-z]*\) .*/\1/p')
[[ -n $commands ]] || { echo 'The program names no commands'; exit 1; }
for command in $commands; do
    offers "$command" "$command"
    for option in $("$program" "$command" --help | grep -o '^  \(-h, \)\?--[a-z-]*' | sed 's/.*--/--/' | sort -u); do
        COMP_WORDS=("$program" "$command" "$option") COMP_CWORD=2 COMPREPLY=()
        COMP_LINE="$program $command $option" COMP_POINT=${#COMP_LINE}
        _aveldoran
        [[ " ${COMPREPLY[*]} " == *" $option "* ]] || { echo "$command $option is not offered"; failures=$((failures + 1)); }
    done
done
exit $((failures > 0))

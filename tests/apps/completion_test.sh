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

fail() {
    printf '%s\n' "$1"
    failures=$((failures + 1))
}

# complete_line WORD...: the offers are in COMPREPLY. As in bash, "--format=j" is three words.
complete_line() {
    local word
    COMP_WORDS=("$program") COMP_LINE="$program $*" COMPREPLY=()
    for word in "$@"; do
        if [[ $word == --*=* ]]; then
            COMP_WORDS+=("${word%%=*}" '=')
            [[ $word == *= ]] || COMP_WORDS+=("${word#*=}")
        else
            COMP_WORDS+=("$word")
        fi
    done
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1)) COMP_POINT=${#COMP_LINE}
    _aveldoran
}

# offers EXPECTED WORD...: the offers, sorted and separated by blanks, are those expected.
offers() {
    local expected=$1 got
    shift
    complete_line "$@"
    got=$(printf '%s\n' "${COMPREPLY[@]}" | sort | paste -sd ' ')
    [[ $got == "$expected" ]] || fail "For \"$*\": \"$got\", expected \"$expected\""
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
offers 'json text' markers --format=
offers 'json' markers --format=j
offers 'json' channels --expand --format=j
offers 'json text' limits --format ''
offers 'json text' calibration --format ''
offers 'name none' drive --labels=n
offers 'compass gyro pressure' drive --sensors ''
offers 'compass,gyro' drive --sensors compass,g
offers 'compass,gyro' drive --sensors=compass,g
offers 'dBuA/m dBuV dBuV/m' drive --unit dBu
offers '' markers --max 3
offers '' record --start ''
offers '--spacing' markers --sp
offers 'trace.csv' markers tr
offers 'trace.csv' markers --max 3 t
offers 'trace.csv' limits --check t
offers 'trace.csv' limits --check=t
offers 'trace.csv' markers --plot=tr

commands=$("$program" --help | sed -n '/^Commands:/,/^$/s/^  \([a-z]*\) .*/\1/p')
[[ -n $commands ]] || { echo 'The program names no commands'; exit 1; }

# Each command of the program is offered, and each of its options.
for command in $commands; do
    offers "$command" "$command"
    for option in $("$program" "$command" --help | grep -o '^  \(-h, \)\?--[a-z-]*' | sed 's/.*--/--/' | sort -u); do
        complete_line "$command" "$option"
        [[ " ${COMPREPLY[*]} " == *" $option "* ]] || fail "$command $option is not offered"
    done
done

# What the program says of a value of an option; nothing if it takes it. It goes on to files that don't exist.
refusal() {
    local command=$1 option=$2 value=$3
    local -A rest=([calibration]='none.xml' [channels]='none.profile' [drive]='none.mdr' [limits]='none.xml'
        [logo]='--model 1 --firmware 2 --serial 3 --settings none.ini' [markers]='none.csv'
        [record]='--simulate --gpx none.gpx --output none.mdr' [waterfall]='none.mdr --output none.png'
        [waypoints]='none.gpx' [devices]='')
    # shellcheck disable=SC2086
    "$program" "$command" "$option" "$value" ${rest[$command]} 2>&1 >/dev/null |
        grep "^aveldoran: $command: $option expects "
}

# Each value that is offered is one that the program takes; and where it takes only some, as its refusal of others
# tells, these are offered.
checked=0
for command in $commands; do
    for option in $("$program" "$command" --help | sed -n '/<FILE/d; s/^  \(--[a-z-]*\) <.*/\1/p'); do
        complete_line "$command" "$option" ''
        for value in "${COMPREPLY[@]}"; do
            [[ -z $(refusal "$command" "$option" "$value") ]] ||
                fail "$command $option $value is offered: $(refusal "$command" "$option" "$value")"
            checked=$((checked + 1))
        done
        accepted=$(refusal "$command" "$option" ',x' | sed -n 's/.* expects \(.* or .*\), not .*/\1/p' |
            sed 's/, or .*//; s/ or /, /; s/, /\n/g' | grep -v ' ' | sort | paste -sd ' ')
        [[ -z $accepted || $accepted != *' '* ]] || offers "$accepted" "$command" "$option" ''
    done
done
((checked > 30)) || fail "Only $checked values are offered"
exit $((failures > 0))

#!/usr/bin/env bash
# commands_test.sh DIRECTORY PAGE...: runs each command "$ aveldoran ..." of the pages in the directory, which has the
# examples/, one after another. A command that says nothing on standard error but what it has written has done its work;
# status 1 is a finding. What the page shows below a command is all that it prints, and then what it has written, but for
# blanks at the ends of lines.

set -euo pipefail
cd "$1"
shift
count=0
failures=0

# check PAGE COMMAND SHOWN
check() {
    local status=0 output written
    count=$((count + 1))
    output=$(bash -c "$2" 2>told.txt | sed 's/ *$//'; exit "${PIPESTATUS[0]}") || status=$?
    written=$(grep '^[^ ]*: written; ' told.txt || true)
    output+=${output:+${written:+$'\n'}}$written
    if ((status > 1)) || grep -qv '^[^ ]*: written; ' told.txt || [[ -n $3 && $output != "$3" ]]; then
        printf '%s: $ %s\nstatus %s\n' "$1" "$2" "$status"
        cat told.txt
        diff <(printf '%s\n' "$3") <(printf '%s\n' "$output") || true
        failures=$((failures + 1))
    fi
}

for page; do
    command='' shown='' indentation=''
    while IFS= read -r line || [[ -n $command ]]; do
        if [[ $command == *\\ ]]; then
            command="${command%\\}${line}"
        elif [[ -n $command && $line == "$indentation"[^\$\`]* ]]; then
            shown+="${shown:+$'\n'}${line#"$indentation"}"
        else
            [[ -z $command ]] || check "$page" "$command" "$shown"
            command='' shown=''
            if [[ $line =~ ^(\ *)\$\ (aveldoran\ .*)$ ]]; then
                indentation=${BASH_REMATCH[1]} command=${BASH_REMATCH[2]}
            fi
        fi
    done <"$page"
done

printf '%d commands, %d failed\n' "$count" "$failures"
((count > 0 && failures == 0))

# Completion of `aveldoran` in bash. Commands, options and their values are those that the program's own help names.

# _aveldoran_about COMMAND OPTION: what the help says of an option, on one line: "--format <FORMAT> How to print: ...".
_aveldoran_about() {
    "$1" "$2" --help 2>/dev/null |
        awk -v option="$3" '/^  (-[a-z], )?--/ { found = $1 == option } /^$/ { found = 0 } found' | tr -s ' \n' ' '
}

# The values of an option that has only those: the help ends in ": ONE, TWO or THREE." or goes on with "; ...".
_aveldoran_values() {
    sed -nE 's/.*: (([^ ,;:]+, )*[^ ,;:]+ or [^ ,;:]+)(;.*|\. *)$/\1/; T; s/,? or /, /; s/, / /g; p' <<<"$1"
}

_aveldoran() {
    # shellcheck disable=SC2034  # what _init_completion sets
    local cur prev words cword split
    _init_completion -s || return

    local program=${words[0]}
    if ((cword == 1)) || [[ $cword == 2 && ${words[1]} == help ]]; then
        local commands
        commands=$("$program" --help 2>/dev/null | sed -n '/^Commands:/,/^$/s/^  \([a-z]\{1,\}\) .*/\1/p')
        ((cword == 1)) && commands+=' help --help --version'
        mapfile -t COMPREPLY < <(compgen -W "$commands" -- "$cur")
        return
    fi

    local about=''
    [[ $prev == --* ]] && about=$(_aveldoran_about "$program" "${words[1]}" "$prev")
    case $about in
    *'<FILE'* | *'<TRACE'*)
        _filedir
        return
        ;;
    *'<LIST>'*) # after the last comma
        local before=''
        [[ $cur == *,* ]] && before=${cur%,*},
        mapfile -t COMPREPLY < <(compgen -P "$before" -W "$(_aveldoran_values "$about")" -- "${cur##*,}")
        return
        ;;
    *'<'*'>'*)
        mapfile -t COMPREPLY < <(compgen -W "$(_aveldoran_values "$about")" -- "$cur")
        return
        ;;
    esac
    if [[ $cur == -* ]]; then
        local options
        options=$("$program" "${words[1]}" --help 2>/dev/null | sed -n 's/^  \(-h, \)\{0,1\}\(--[a-z-]*\).*/\2/p')
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$cur")
    else
        _filedir
    fi
}

complete -F _aveldoran aveldoran

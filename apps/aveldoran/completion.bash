# Completion of `aveldoran` in bash. Commands and options are those that the program's own help names.

_aveldoran() {
    local cur prev words cword
    _init_completion || return

    local program=${words[0]}
    if ((cword == 1)) || [[ $cword == 2 && ${words[1]} == help ]]; then
        local commands
        commands=$("$program" --help 2>/dev/null | sed -n '/^Commands:/,/^$/s/^  \([a-z]\{1,\}\) .*/\1/p')
        ((cword == 1)) && commands+=' help --help --version'
        mapfile -t COMPREPLY < <(compgen -W "$commands" -- "$cur")
        return
    fi

    local help
    help=$("$program" "${words[1]}" --help 2>/dev/null)
    if [[ $cur == -* ]]; then
        local options
        options=$(sed -n 's/^  \(-h, \)\{0,1\}\(--[a-z-]*\).*/\2/p' <<<"$help")
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$cur")
    elif [[ $prev == --format ]]; then
        local formats
        formats=$(sed -n '/^  --format/{N;s/.*How to print: //;s/[:;.].*//;s/,//g;s/\<or\>//g;p;}' <<<"$help")
        mapfile -t COMPREPLY < <(compgen -W "$formats" -- "$cur")
    else
        _filedir
    fi
}

complete -F _aveldoran aveldoran

# SPDX-FileCopyrightText: The Quillane authors
# SPDX-License-Identifier: MIT
#
# Completions of quillane for bash; share/bash-completion/completions.

_quillane() {
    local word=${COMP_WORDS[COMP_CWORD]}
    COMPREPLY=()
    case $COMP_CWORD:${COMP_WORDS[1]} in
    1:*)
        mapfile -t COMPREPLY < <(compgen -W "status doctor share history capture pause resume quit \
            --at-login --help -h --version" -- "$word")
        ;;
    2:status | 2:doctor)
        mapfile -t COMPREPLY < <(compgen -W "--json" -- "$word")
        ;;
    2:share)
        compopt -o filenames 2>/dev/null # fails outside a completion
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
        ;;
    esac
}

complete -F _quillane quillane

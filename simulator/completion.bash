# SPDX-License-Identifier: MIT
#
# bash completes the words of talvane-sim and talvane-host: options, a machine for the first of
# them, then a program and its words.

_talvane_launcher()
{
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} i
    local machines
    machines=$(dirname -- "$(type -P -- "$1")")/../share/talvane/machines
    COMPREPLY=()
    for ((i = 1; i < COMP_CWORD; ++i)); do
        if [[ ${COMP_WORDS[i]} != -- ]]; then continue; fi
        # What follows belongs to the program, whose own completion bash-completion finds.
        if declare -F _command_offset >/dev/null; then
            _command_offset $((i + 1))
        elif ((COMP_CWORD == i + 1)); then
            mapfile -t COMPREPLY < <(compgen -c -- "$word")
        else
            compopt -o default 2>/dev/null
        fi
        return
    done
    case $before in
        --log | --control) compopt -o default 2>/dev/null ;;
        --root)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -d -- "$word")
            ;;
        *)
            if [[ $word == -* || $1 == *talvane-host ]]; then
                mapfile -t COMPREPLY < <(compgen -W \
                    "$("$1" --help 2>/dev/null | grep -oE -e '--[a-z-]+') --" -- "$word")
            elif ((COMP_CWORD == 1)); then
                compopt -o filenames 2>/dev/null
                mapfile -t COMPREPLY < <(compgen -d -- "$word"
                    compgen -f -X '!*.tar.gz' -- "$word"
                    compgen -W "$(command ls -- "$machines" 2>/dev/null)" -- "$word")
            fi
            ;;
    esac
}
complete -F _talvane_launcher talvane-sim talvane-host

# SPDX-License-Identifier: MIT
#
# bash completes the words of talvane: commands and options as the tool's own help names them, and the
# values of options.

_talvane()
{
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} i help
    local machines
    machines=$(dirname -- "$(type -P -- "$1")")/../share/talvane/machines
    local -a command=()
    COMPREPLY=()
    # bash takes --option=value for three words.
    if [[ $word == = ]]; then
        word=
    elif [[ $before == = ]]; then
        before=${COMP_WORDS[COMP_CWORD-2]}
    fi
    case $before in
        --machine)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -d -- "$word"
                compgen -W "$(command ls -- "$machines" 2>/dev/null)" -- "$word")
            return
            ;;
        --type) help='temperature voltage fan' ;;
        --which)
            help='lower-non-critical lower-critical lower-non-recoverable
                upper-non-critical upper-critical upper-non-recoverable'
            ;;
        --action) help='none hard-reset power-down power-cycle' ;;
        --watch | --count | --interval | --entity | --timeout) return ;;
        *)
            # The command so far: words that are neither options nor their values.
            for ((i = 1; i < COMP_CWORD; ++i)); do
                case ${COMP_WORDS[i]} in
                    --machine | --type | --which | --action | --watch | --count | --interval | \
                        --entity | --timeout)
                        if [[ ${COMP_WORDS[i+1]} == = ]]; then ((++i)); fi
                        ((++i))
                        ;;
                    -*) ;;
                    *) command+=("${COMP_WORDS[i]}") ;;
                esac
            done
            help=$("$1" "${command[@]}" --help 2>/dev/null)
            if [[ $word == -* ]]; then
                help=$(sed -n 's/^ *\(-[a-z],\)\{0,1\}\(--[a-z-]*\).*/\2/p' <<<"$help")
            else
                help=$(sed -n '/^Commands:/,/^$/s/^  \([a-z]*\) .*/\1/p' <<<"$help")
            fi
            ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$help" -- "$word")
}
complete -F _talvane talvane

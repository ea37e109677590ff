# SPDX-License-Identifier: MIT
#
# bash completes the words of talvane: commands and options as the tool's own help names them, the
# values of options, and where a path of `get` begins.

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
                compgen -f -X '!*.tar.gz' -- "$word"
                compgen -W "$(command ls -- "$machines" 2>/dev/null)" -- "$word")
            return
            ;;
        --root)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -d -- "$word")
            return
            ;;
        --rules | --output | --html)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -f -- "$word")
            return
            ;;
        --format) help='text json nagios' ;;
        --color) help='auto always never' ;;
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
                    --machine | --root | --rules | --output | --html | --format | --color | --type | --which | --action | \
                        --watch | --count | --interval | --entity | --timeout)
                        if [[ ${COMP_WORDS[i+1]} == = ]]; then ((++i)); fi
                        ((++i))
                        ;;
                    -*) ;;
                    *) command+=("${COMP_WORDS[i]}") ;;
                esac
            done
            help=$("$1" "${command[@]}" --help 2>/dev/null)
            if [[ $word != -* && ${command[*]} == capture ]]; then
                compopt -o filenames 2>/dev/null
                mapfile -t COMPREPLY < <(compgen -f -- "$word")
                return
            fi
            if [[ $word == -* ]]; then
                help=$(sed -n 's/^ *\(-[a-z],\)\{0,1\}\(--[a-z-]*\).*/\2/p' <<<"$help")
            elif [[ ${command[*]} == get ]]; then
                # The commands that have a member in the JSON.
                compopt -o nospace 2>/dev/null
                help=$("$1" --help 2>/dev/null |
                    sed -n '/^Commands:/,/^$/{/^  \(report\|get\|metrics\|capture\|doctor\|threshold\) /!s/^  \([a-z]*\) .*/\1./p}')
            else
                help=$(sed -n '/^Commands:/,/^$/s/^  \([a-z]*\) .*/\1/p' <<<"$help")
            fi
            ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$help" -- "$word")
}
complete -F _talvane talvane

#!/bin/bash
# SPDX-License-Identifier: MIT
#
# bash completes the command lines of an installed tree: the words that the programs know, and no
# others. Usage: completion.sh BUILD_DIR CMAKE
set -u
build=$1 cmake=$2
. "$(dirname "$0")/scratch.sh"
prefix=$work/prefix
"$cmake" --install "$build" --prefix "$prefix" >"$work/log" 2>&1 || { cat "$work/log" >&2; exit 1; }
export PATH=$prefix/bin:$PATH
mkdir -p "$work/here/my-server"
touch "$work/here/my-rules" "$work/here/box.tar.gz"
cd "$work/here" || exit 2
for program in talvane talvane-sim talvane-host; do
    # shellcheck source=/dev/null
    . "$prefix/share/bash-completion/completions/$program" || exit 1
done

# offers LINE WORD...: completing the end of the line offers these words, in any order. A line whose
# last word is complete ends in a blank.
offers() {
    local line=$1 function
    shift
    # shellcheck disable=SC2206  # split as bash splits a command line
    COMP_WORDS=(${line//=/ = })
    if [[ $line == *' ' ]]; then COMP_WORDS+=(''); fi
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    COMPREPLY=()
    function=$(complete -p "${COMP_WORDS[0]}" | sed 's/.*-F \([^ ]*\) .*/\1/')
    "$function" "${COMP_WORDS[0]}" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD-1]}"
    if ! diff -u --label wanted --label offered <(printf '%s\n' "$@" | sort) \
        <(printf '%s\n' "${COMPREPLY[@]}" | sort) >&2; then
        echo "wrong words are offered for '$line'" >&2
        failed=1
    fi
}

offers 'talvane te' temperatures
offers 'talvane th' thresholds threshold
offers 'talvane --v' --version
offers 'talvane --machine full-server wat' watchdog
offers 'talvane --machine=full-server wat' watchdog
offers 'talvane watchdog ' show set reset stop
offers 'talvane watchdog set --' --help --json --machine --direct --host --root --action --color --timeout --yes
offers 'talvane threshold set --json --wh' --which
offers 'talvane sensors --cou' --count
offers 'talvane board --cou' ''
offers 'talvane watchdog set --yes --ti' --timeout
offers 'talvane health --s' --states
offers 'talvane health --rules my' my-rules my-server
offers 'talvane metrics --output my' my-rules my-server
offers 'talvane get wat' watchdog.
offers 'talvane get me' memory.
offers 'talvane get r' ''
offers 'talvane get get' ''
offers 'talvane get board.x ' ''
offers 'talvane get --machine full-server health' health.
offers 'talvane sensors --watch ' ''
offers 'talvane board --machine my' my-server
offers 'talvane board --machine full' full-server
offers 'talvane board --machine box' box.tar.gz
offers 'talvane capture my' my-rules my-server
offers 'talvane capture --re' --redact
offers 'talvane-sim box' box.tar.gz
offers 'talvane board --machine=qemu-s' qemu-small
offers 'talvane-sim f' failing-server full-server
offers 'talvane-sim my' my-server
offers 'talvane-sim full-server --r' --real-time
offers 'talvane-sim full-server -- talvane-s' talvane-sim
offers 'talvane board --root my' my-server
offers 'talvane-host --r' --root
offers 'talvane-host --root my' my-server
offers 'talvane-host -- talvane-h' talvane-host

# Everything that the tool names as a command is offered.
mapfile -t commands < <(talvane --help | sed -n '/^Commands:/,/^$/s/^  \([a-z]*\) .*/\1/p')
if ((${#commands[@]} < 15)); then
    echo 'the help of the tool is not understood' >&2
    failed=1
fi
offers 'talvane ' "${commands[@]}"

# The value of an option is not taken for a command: each option that has one is known. If it were not,
# the options of report would be offered.
known=
for command in "${commands[@]}" 'threshold set' 'watchdog set'; do
    # shellcheck disable=SC2086  # two words
    for option in $(talvane $command --help | sed -n 's/^ *\(--[a-z-]*\) [A-Z].*/\1/p'); do
        case $known in *" $option "*) continue ;; esac
        known="$known $option "
        offers "talvane $option report $command $option" "$option"
    done
done

# takes_values COMMAND OPTION: the tool takes just the values that are offered
takes_values() {
    local values
    # shellcheck disable=SC2086  # several words
    values=$(talvane $1 "$2" nothing 2>&1 |
        sed -n 's/.*nothing \(is none of \|not in {\)\([a-z, -]*[a-z]\).*/\2/p' |
        sed 's/, nor a number.*//')
    # Without values this would only be compared with an offer of none.
    if [[ -z $values ]]; then
        echo "what $2 takes is not understood" >&2
        failed=1
    fi
    # shellcheck disable=SC2086
    offers "talvane $1 $2 " ${values//,/ }
}
takes_values 'health' --format
takes_values 'health' --color
takes_values 'watchdog set' --action
takes_values 'threshold set' --which
takes_values 'threshold set' --type
exit $failed

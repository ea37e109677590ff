#!/bin/bash
# SPDX-License-Identifier: MIT
#
# The man pages have no warning, and their examples hold: every file that an example shows is written,
# every command is run on an installed tree, and what it prints is what the page shows. A literal block
# under EXAMPLES is a file if its first line is a comment with the file's name, and else commands, each
# after "$ ". With TALVANE_RECORD set, the outputs in the pages are recorded anew.
# Usage: man_examples.sh SOURCE_DIR BUILD_DIR CMAKE BRIDGE
set -u
source=$1 build=$2 cmake=$3 bridge=$4
. "$(dirname "$0")/scratch.sh"

prefix=$work/prefix
"$cmake" --install "$build" --prefix "$prefix" >"$work/log" 2>&1 || { cat "$work/log" >&2; exit 1; }
PATH=$prefix/bin:$(dirname "$bridge"):$(dirname "$cmake"):$PATH
export PATH LC_ALL=C
export PKG_CONFIG_PATH=$prefix/lib/pkgconfig CMAKE_PREFIX_PATH=$prefix LD_LIBRARY_PATH=$prefix/lib
unset CFLAGS CXXFLAGS LDFLAGS

# The roff escapes that the examples use, taken out and put in.
plain() { sed -e 's/^\\&//' -e 's/\\-/-/g' -e "s/\\\\(aq/'/g" -e 's/\\e/\\/g'; }
escaped() { sed -e 's/\\/\\e/g' -e 's/-/\\-/g' -e "s/'/\\\\(aq/g" -e 's/^\./\\\&./'; }

# Prints the literal block of the lines in the array `block`, with what its commands print now.
run_block() {
    local first name i command
    first=$(plain <<<"${block[0]}")
    case $first in
        '/* '*' */' | '# '*)
            name=${first#* }
            name=${name%% *}
            mkdir -p "$(dirname "$name")"
            printf '%s\n' "${block[@]}" | plain >"$name"
            printf '%s\n' "${block[@]}"
            return
            ;;
    esac
    i=0
    while ((i < ${#block[@]})); do
        if [[ ${block[i]} != '$ '* ]]; then
            ((++i))
            continue
        fi
        command=
        while :; do
            echo "${block[i]}"
            command+=$(plain <<<"${block[i]}")$'\n'
            if [[ ! ${block[i]} =~ (\\e|\|)$ ]]; then break; fi
            ((++i))
        done
        ((++i))
        sh -c "${command#'$ '}" </dev/null 2>&1 | escaped
    done
}

# Prints a page as it reads after its examples were run.
run_page() {
    local section='' in_block='' line
    local -a block
    while IFS= read -r line; do
        case $line in
            '.Sh '*) section=${line#.Sh } ;;
            '.Bd -literal')
                block=()
                in_block=$section
                ;;
            .Ed)
                if [ "$in_block" = EXAMPLES ]; then run_block; fi
                in_block=
                ;;
            *)
                if [ "$in_block" = EXAMPLES ]; then
                    block+=("$line")
                    continue
                fi
                ;;
        esac
        printf '%s\n' "$line"
    done <"$1"
}

for page in "$source"/docs/man/*; do
    name=${page##*/}
    if command -v man >/dev/null; then
        warnings=$(MANWIDTH=80 man -l --warnings -E UTF-8 "$page" 2>&1 >/dev/null)
        [ -z "$warnings" ] || fail "$name: $warnings"
    fi
    rm -rf "$work/try"
    mkdir "$work/try"
    (cd "$work/try" && run_page "$page" >"$work/$name")
    if [ -n "${TALVANE_RECORD-}" ]; then
        cp "$work/$name" "$page"
    elif ! diff -u --label "$name: the page" --label "$name: its examples as run" \
        "$page" "$work/$name" >&2; then
        fail "$name: an example does not do what the page shows"
    fi
    # A page whose commands are not recognised would pass without being tried.
    grep -q '^\$ ' "$page" || fail "$name: no example"
done
exit $failed

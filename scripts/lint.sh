#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Runs clang-tidy over the sources. `names` checks the law of names alone, in every folder, tests
# included, as CI does; without it all checks run over everything but the tests.
# Usage: lint.sh [names]
set -eu
cd "$(dirname "$0")/.."
case "$*" in '' | names) ;; *) echo 'usage: lint.sh [names]' >&2; exit 2 ;; esac

# A build description of its own: clang cannot read what gcc has precompiled.
build=build/lint
cmake --preset debug -B "$build" -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON >/dev/null

if [ "$*" = names ]; then
    # Many files in one, so that a header is read once for them. Where programs of a folder use a name
    # twice, and after a finding, its programs are read one by one.
    rm -rf "$build/names"
    # shellcheck disable=SC2016  # expanded by the inner shell
    scripts/name-units.py "$build" "$build/names" | xargs -P "$(nproc)" -L 1 sh -c '
        check() {  # FILE...: the version is the lowest for which all functions are declared
            clang-tidy -p "$0" --quiet --checks="-*,readability-identifier-naming" \
                --extra-arg=-w --extra-arg=-fgnuc-version=4.4 "$@"
        }
        found=$(check "$1" 2>&1) && exit 0
        [ $# -eq 1 ] || { shift && found=$(check "$@" 2>&1) && exit 0; }
        printf "%s\n" "$found"
        exit 1' "$build/names"
    exit
fi

sources=$(sed -n 's/^  "file": "\(.*\)",\{0,1\}$/\1/p' "$build/compile_commands.json" |
    sed "s|^$PWD/||" | grep -v -e '^/' -e '^tests/' -e "^$build/" | sort -u)
# Findings come on standard output; standard error counts what was found in system headers.
messages=$(mktemp)
trap 'rm -f "$messages"' EXIT
if ! echo "$sources" |
    xargs -P "$(nproc)" -n 1 clang-tidy -p "$build" --quiet 2>"$messages"; then
    cat "$messages" >&2
    exit 1
fi

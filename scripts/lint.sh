#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Runs clang-tidy over the sources. `names` checks the law of names alone, in every folder, tests
# included, as CI does; without it all checks run over everything but the tests.
# Usage: lint.sh [names]
set -eu
cd "$(dirname "$0")/.."
case "$*" in '' | names) ;; *) echo 'usage: lint.sh [names]' >&2; exit 2 ;; esac

# Names are checked in whole targets, so that a header is read once for each; the other checks tell a
# source file from a header and take one file at a time.
whole=OFF
[ "$*" != names ] || whole=ON
# A build description of its own: clang cannot read what gcc has precompiled.
build=build/lint
cmake --preset debug -B "$build" -DCMAKE_UNITY_BUILD=$whole -DCMAKE_UNITY_BUILD_BATCH_SIZE=0 \
    -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON >/dev/null

sources=$(sed -n 's/^  "file": "\(.*\)",\{0,1\}$/\1/p' "$build/compile_commands.json" |
    sed "s|^$PWD/||" | grep -v -e '^/' -e "^$build/googletest/" -e /talvane_test_headers.dir/ | sort -u)
checks=
if [ "$*" = names ]; then
    checks='--checks=-*,readability-identifier-naming --extra-arg=-w'
else
    sources=$(echo "$sources" | grep -v -e '^tests/' -e "^$build/")
fi

messages=$(mktemp)
trap 'rm -f "$messages"' EXIT
# Findings come on standard output; standard error counts what was found in system headers.
if ! echo "$sources" |
    xargs -P "$(nproc)" -n 1 clang-tidy -p "$build" --quiet $checks 2>"$messages"; then  # several words
    cat "$messages" >&2
    exit 1
fi

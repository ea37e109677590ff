#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Runs clang-tidy on the library's sources. Usage: lint.sh [BUILD_DIR]; the build folder holds
# compile_commands.json, by default that of the release preset.
set -eu
cd "$(dirname "$0")/.."
build=${1:-build/release}
if [ ! -f "$build/compile_commands.json" ]; then
    echo "$build/compile_commands.json is missing: cmake --preset release" >&2
    exit 2
fi
messages=$(mktemp)
trap 'rm -f "$messages"' EXIT
# Findings come on standard output; standard error counts what was found in system headers.
if ! find . -maxdepth 2 -name '*.cpp' |
    grep -E '^\./((SmBios|IPMI|PCI|storage|interface|load|base)/)?[^/]*$' | sort |
    xargs -P "$(nproc)" -n 4 clang-tidy -p "$build" --quiet 2>"$messages"; then
    cat "$messages" >&2
    exit 1
fi

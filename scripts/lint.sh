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
library_sources() {
    for source in *.cpp SmBios/*.cpp; do echo "$source"; done
}
library_sources | xargs -P "$(nproc)" -n 4 clang-tidy -p "$build" --quiet

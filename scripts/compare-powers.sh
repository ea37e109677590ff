#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Compares powers and logarithms of random arguments with the C library's of 113 digits, in a 32-bit
# and a 64-bit program. Prints each difference and fails when there is one.
# Usage: compare-powers.sh [COUNT [SEED]]; COUNT results of each function, by default ten million.
set -eu
cd "$(dirname "$0")/.."
count=${1:-10000000}
seed=${2:-1}

scripts/install-packages.sh build >&2
build=$(mktemp -d)
trap 'rm -rf "$build"' EXIT
for machine in '-m32 -march=i686' -m64; do
    # shellcheck disable=SC2086  # several options
    g++ $machine -std=c++20 -O2 -I. -Itests/base -o "$build/compare" \
        tests/base/CompareProgram.cpp tests/base/Comparison.cpp tests/base/Expected.cpp \
        tests/base/RandomArguments.cpp base/*.cpp
    printf '%s: ' "$machine"
    "$build/compare" "$count" "$seed"
done

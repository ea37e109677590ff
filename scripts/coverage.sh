#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Builds everything with the coverage counters of clang, runs the tests and prints which share of the
# lines and branches of each room they reach; lists what they miss of the library. The bridge and
# transport/ are built and tested as programs of this machine, too. A branch is one outcome of a
# condition of the sources, so that none is made by the compiler; coverage-table.py says how a line
# is excluded.
# Usage: coverage.sh [--missed ROOM]... [REGEX]
#   --missed   lists what is missed of another room, such as tools, as well
#   REGEX      only the tests whose names match it are run
set -eu
cd "$(dirname "$0")/.."

missed=
while [ $# -gt 0 ]; do
    case $1 in
        --missed) missed="$missed --missed $2"; shift 2 ;;
        -*) echo 'usage: coverage.sh [--missed ROOM]... [REGEX]' >&2; exit 2 ;;
        *) break ;;
    esac
done
tests=${1-.}

scripts/install-packages.sh test bridge coverage
scripts/enable-32-bit.sh >/dev/null
build=build/coverage
cmake --preset coverage -DTALVANE_TEST_TIMEOUT=3600 >/dev/null
cmake --build --preset coverage >/dev/null
cmake -S bridge -B "$build-bridge" -G Ninja -DCMAKE_CXX_COMPILER=clang++-14 -DCMAKE_UNITY_BUILD=ON \
    -DCMAKE_UNITY_BUILD_BATCH_SIZE=0 -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=-O1 \
    -DTALVANE_BRIDGE_TESTS=ON -DTALVANE_COVERAGE=ON >/dev/null
cmake --build "$build-bridge" >/dev/null

# All processes of a program share the counters of one file, so nothing is left to merge but those of
# the programs.
rm -rf "$build/profiles"
mkdir "$build/profiles"
export LLVM_PROFILE_FILE="$PWD/$build/profiles/%m%c.profraw"
# One test starts the tool where no file may grow. By then its counters have their file.
"$build/tools/talvane" --version >/dev/null

# Failures are named at the end: the counters of the tests that passed count all the same.
failures=
for folder in "$build-bridge" "$build"; do
    ctest --test-dir "$folder" --parallel "$(nproc)" --tests-regex "$tests" >"$folder/tests.log" ||
        failures="$failures $folder/tests.log"
done

llvm-profdata-14 merge -sparse "$build/profiles" -o "$build/merged.profdata"
set --
# shellcheck disable=SC2044  # names without blanks
for program in $(find "$build" "$build-bridge" -type f -perm -u+x ! -path '*/CMakeFiles/*' \
    -exec grep -l __llvm_covmap {} +); do
    set -- "$@" -object "$program"
done
shift  # the first is given without the option
# A warning says that programs have functions of the same name, such as main.
# shellcheck disable=SC2086  # words
llvm-cov-14 show "$@" -instr-profile="$build/merged.profdata" -show-branches=count \
    -show-instantiations=false -ignore-filename-regex='^/usr/' \
    2>"$build/llvm-cov.log" | scripts/coverage-table.py $missed

if [ -n "$failures" ]; then
    echo 'Tests failed:' >&2
    # shellcheck disable=SC2086  # words
    sed -n '/^The following tests FAILED/,$p' $failures >&2
    exit 1
fi

#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Installs what is missing, then builds and runs all tests, optimised and under the sanitizers, and
# fuzzes each decoder for a short time.
# Ends with one line per build and the sum; fails when anything failed.
# Usage: test.sh [PRESET...]; by default release and asan, and the bridge as a program of this machine.
# On a kernel that runs no 32-bit programs they are emulated, which takes many times as long: there the
# default is release, and the bridge; the kept inputs of fuzzing are among the tests in any case.
set -u
cd "$(dirname "$0")/.." || exit 2

scripts/install-packages.sh test || exit 1
programs=$(scripts/enable-32-bit.sh) || exit 1
scripts/fetch-python.sh >/dev/null || echo 'going on without the test of an agent in Python' >&2
skipped_presets=
with_bridge=
with_fuzzing=
if [ $# -eq 0 ]; then
    with_bridge=yes
    if [ "$programs" = native ]; then
        set -- release asan
        with_fuzzing=yes
    else
        set -- release
        skipped_presets='asan: not run, since this kernel runs no 32-bit programs itself
'
    fi
fi
case " $* " in *' asan '*) scripts/install-packages.sh sanitizers || exit 1 ;; esac
timeout=600
# Two gibibytes, which a test asks for, are more than AddressSanitizer has room for at 32 bits.
asan_options=max_allocation_size_mb=256:allocator_may_return_null=1
if [ "$programs" != native ]; then
    timeout=3600
    # The leak detector traces the process, which an emulated one cannot do to itself.
    asan_options=$asan_options:detect_leaks=0
fi

logs=$(mktemp -d)
trap 'rm -rf "$logs"' EXIT
passed=0
failed=0
broken=0
summary=

for preset in "$@"; do
    echo "== $preset: build"
    if ! {
        cmake --preset "$preset" -DTALVANE_BUILD_TESTS=ON "-DTALVANE_TEST_TIMEOUT=$timeout" &&
            cmake --build --preset "$preset"
    } >"$logs/build" 2>&1; then
        cat "$logs/build"
        summary="$summary$preset: does not build
"
        broken=1
        continue
    fi
    echo "== $preset: test"
    ASAN_OPTIONS=$asan_options \
        ctest --preset "$preset" --parallel "$(($(nproc) + 1))" --no-tests=error 2>&1 |
        tee "$logs/test" | grep -v '^ *Start '

    # ctest closes with "98% tests passed, 2 tests failed out of 100".
    counts=$(sed -n 's/.*% tests passed, \([0-9]*\) tests failed out of \([0-9]*\)$/\1 \2/p' \
        "$logs/test")
    if [ -z "$counts" ]; then
        summary="$summary$preset: the tests did not run to their end
"
        broken=1
        continue
    fi
    run_failed=${counts% *}
    skipped=$(grep -c '\*\*\*Skipped' "$logs/test")  # ctest counts them as passed
    run_passed=$((${counts#* } - run_failed - skipped))
    summary="$summary$preset: $run_passed passed, $run_failed failed, $skipped skipped
"
    passed=$((passed + run_passed))
    failed=$((failed + run_failed))
done

if [ -n "$with_bridge" ]; then
    echo '== bridge: build and test'
    if scripts/test-bridge.sh >"$logs/bridge" 2>&1; then
        summary="${summary}bridge: passed under the sanitizers
"
    else
        cat "$logs/bridge"
        summary="${summary}bridge: failed
"
        broken=1
    fi
fi

if [ -n "$with_fuzzing" ]; then
    echo '== fuzzing'
    if scripts/fuzz.sh --seconds 5 2>&1; then
        summary="${summary}fuzzing: nothing found
"
    else
        summary="${summary}fuzzing: failed
"
        broken=1
    fi
fi

# How the answers about captured machines compare with dmidecode's, where the captures are.
table=build/$1/tests/captures/captures_table
[ ! -x "$table" ] || { echo && "$table" 2>&1; } || true  # a difference has failed its test already

echo
printf '%s' "$summary$skipped_presets"
[ $broken = 0 ] || exit 1
echo "$passed passed, $failed failed"
[ $failed = 0 ]

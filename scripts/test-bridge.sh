#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Builds the bridge as a program of this machine and tests it with its device and its threads: once
# under AddressSanitizer and UndefinedBehaviorSanitizer, once, the device alone, under ThreadSanitizer. No
# root is needed, and nothing of the machine is touched. Fails when anything failed.
# Usage: test-bridge.sh [address|thread...]
set -eu
cd "$(dirname "$0")/.."
[ $# -gt 0 ] || set -- address thread

scripts/install-packages.sh bridge
# This sanitizer does not see how the C++ library locks a std::timed_mutex, only how it unlocks it.
export TSAN_OPTIONS=report_mutex_bugs=0
for kind in "$@"; do
    case $kind in
        address)
            flags='-fsanitize=address,undefined -fno-sanitize-recover=all'
            targets='bridge_test bridge_service_test bridge_device_test transport_test transport_kernel_test'
            tests=.
            ;;
        thread)
            # The compiler cannot tell the bounds of what this sanitizer instruments.
            flags='-fsanitize=thread -Wno-stringop-overflow'
            targets=bridge_device_test
            tests='^bridge_device_test'
            ;;
        *)
            echo "test-bridge.sh: unknown sanitizer '$kind' (address or thread)" >&2
            exit 2
            ;;
    esac
    cmake -S bridge -B "build/bridge-$kind" -G Ninja -DTALVANE_BRIDGE_TESTS=ON \
        -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=0 \
        -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG='-g1 -Og' -DCMAKE_CXX_FLAGS="$flags" >/dev/null
    # shellcheck disable=SC2086  # several words
    cmake --build "build/bridge-$kind" --target $targets
    ctest --test-dir "build/bridge-$kind" --output-on-failure --no-tests=error --progress \
        --tests-regex "$tests" --parallel "$(nproc)"
done

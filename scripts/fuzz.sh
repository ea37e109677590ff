#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Builds the fuzz targets with clang and runs each of them, starting from the seeds, from the kept
# inputs of fuzz/corpus and from what earlier runs have found in build/. Prints a table, and names
# each input that was a finding; fails when there is one.
# The targets have 32 bits, as the library has, where the kernel runs such programs; elsewhere they
# have this machine's word size (with --emulated, they have 32 bits and are emulated).
# Usage: fuzz.sh [--emulated] [--keep] [--seconds N | --runs N | HOURS] [TARGET...]
#   HOURS       for all targets together; by default each runs for 15 seconds
#   --seconds   for each target
#   --runs      so many executions of each target
#   --keep      replaces fuzz/corpus by the fewest inputs that reach the same edges, unless emulated
set -eu
cd "$(dirname "$0")/.."

seconds=15
runs=-1
hours=
keep=
emulated=
while [ $# -gt 0 ]; do
    case $1 in
        --seconds) seconds=$2; shift 2 ;;
        --runs) runs=$2 seconds=86400; shift 2 ;;
        --keep) keep=yes; shift ;;
        --emulated) emulated=yes; shift ;;
        [0-9]*) hours=$1; shift ;;
        -*)
            echo 'usage: fuzz.sh [--emulated] [--keep] [--seconds N | --runs N | HOURS] [TARGET...]' >&2
            exit 2
            ;;
        *) break ;;
    esac
done

scripts/install-packages.sh fuzz
programs=$(scripts/enable-32-bit.sh)

names_of() { sed -n 's/^ *talvane_fuzz_target(\([a-z_]*\) .*/\1/p' fuzz/CMakeLists.txt; }

# `word` is what the table of results says of the targets' size.
if [ "$programs" = native ]; then
    bits=32 word=32
elif [ -n "$emulated" ]; then
    bits=32 word=32e
    export ASAN_OPTIONS=detect_leaks=0
else
    bits=64 word=64
fi
build=build/fuzz$bits
cmake -S fuzz -B "$build" -G Ninja -DCMAKE_CXX_COMPILER=clang++-14 "-DTALVANE_FUZZ_BITS=$bits" >/dev/null
cmake --build "$build" >"$build/log" || { cat "$build/log" >&2; exit 1; }
# shellcheck disable=SC2046  # names without blanks
[ $# -gt 0 ] || set -- $(names_of)
[ -z "$hours" ] || seconds=$((hours * 3600 / $#))

fuzz/seeds.py build/fuzz-seeds
results=build/fuzz-results.tsv
findings=build/fuzz-findings
mkdir -p "$findings"
# A folder in memory for the target that writes a file for each input.
[ ! -d /dev/shm ] || export TMPDIR=/dev/shm

run() {  # PROGRAM TARGET SECONDS: libFuzzer's messages
    # The leak detector looks at the end only: an emulated program cannot trace itself, and looking
    # after each input takes too long.
    timeout -s INT -k 60 $(($3 + 300)) "$1" -max_total_time="$3" -runs="$runs" -detect_leaks=0 \
        -close_fd_mask=1 -max_len=4096 -timeout=25 -print_funcs=0 -print_final_stats=1 \
        -artifact_prefix="$findings/$2-" -seed_inputs=@build/fuzz-inputs \
        "build/fuzz-corpus/$2" 2>&1 || true
}

for target in "$@"; do
    program=$build/fuzz_$target
    mkdir -p "build/fuzz-corpus/$target"
    kept=fuzz/corpus/$target.inputs
    rm -rf build/fuzz-kept
    mkdir build/fuzz-kept
    [ ! -e "$kept" ] || fuzz/pack.py unpack "$kept" build/fuzz-kept
    # By their names: an emulated program may not be able to read folders of this machine.
    find "build/fuzz-corpus/$target" build/fuzz-kept "build/fuzz-seeds/$target" -type f |
        paste -s -d , >build/fuzz-inputs
    started=$(date +%s)
    run "$program" "$target" "$seconds" >"build/fuzz-log-$target"
    spent=$(($(date +%s) - started))
    # The last line of progress says what was reached: "#123 DONE cov: 1 ft: 2 corp: ...".
    sed -n 's/^#\([0-9]*\)\t.* cov: \([0-9]*\) ft: \([0-9]*\) .*/\1 \2 \3/p' \
        "build/fuzz-log-$target" | tail -n 1 >"build/fuzz-last"
    read -r executions edges features <"build/fuzz-last" || executions=0 edges=0 features=0
    if [ "$executions" = 0 ]; then
        echo "fuzz.sh: $target has tried nothing:" >&2
        tail -n 20 "build/fuzz-log-$target" >&2
        exit 1
    fi
    printf '%s\t%s\t%s\t%s\t%s\t%s\n' "$target" "$word" "$executions" "$spent" \
        "$edges" "$features" >>"$results"

    if [ -n "$keep" ] && [ "$word" != 32e ]; then
        fewest=build/fuzz-fewest/$target
        rm -rf "$fewest"
        mkdir -p "$fewest"
        ASAN_OPTIONS=detect_leaks=0 "$program" -merge=1 -use_counters=0 -max_len=4096 \
            -close_fd_mask=1 -timeout=25 "$fewest" "build/fuzz-corpus/$target" build/fuzz-kept \
            "build/fuzz-seeds/$target" >"build/fuzz-log-merge" 2>&1
        fuzz/pack.py pack "$fewest" "$kept"
        rm -rf "build/fuzz-corpus/$target"
    fi
done

# Of this run and all before it: executions are added up, coverage is that of the last run.
awk -F '\t' -v findings="$(ls "$findings")" '
    { key = $1 "\t" $2; if (!(key in runs)) order[++count] = key
      runs[key] += $3; time[key] += $4; edges[key] = $5; features[key] = $6 }
    END {
        total = split(findings, names, "\n")
        printf "%-22s %6s %12s %8s %7s %9s %9s\n", "target", "bits", "executions", "a second",
            "edges", "features", "findings"
        for (i = 1; i <= count; ++i) {
            split(order[i], part, "\t")
            found = 0
            for (j = 1; j <= total; ++j) if (index(names[j], part[1] "-") == 1) ++found
            printf "%-22s %6s %12d %8d %7d %9d %9d\n", part[1], part[2], runs[order[i]],
                runs[order[i]] / (time[order[i]] + 0.001), edges[order[i]], features[order[i]], found
        }
    }' "$results"
if [ -n "$(ls "$findings")" ]; then
    echo 'Findings (give one to its program to see what it does):' >&2
    find "$findings" -type f >&2
    exit 1
fi

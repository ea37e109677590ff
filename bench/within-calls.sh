# SPDX-License-Identifier: MIT
#
# Sourced by run.sh, where the kernel runs 32-bit programs itself: the processor time of whole
# processes, and the instructions within a call, counted by callgrind.

# Milliseconds of processor time, user and system, of one run of a command.
cpu_time() {
    local TIMEFORMAT='%U %S'
    { time for ((i = 0; i < runs; ++i)); do "$@" >/dev/null; done; } 2>&1 |
        awk -v runs=$runs '{ printf "%.3f\n", ($1 + $2) * 1000 / runs }'
}

# Instructions within GetInfo, or the function that $entry names, when the agent runs COMMANDS on a
# machine. Calls into the simulated server and what they cause are not counted: a kernel would do
# that work.
instructions() {
    local machine=$1
    shift
    rm -f "$work"/callgrind.*
    valgrind --tool=callgrind --trace-children=yes --toggle-collect="${entry:-GetInfo}" --compress-strings=no \
        --callgrind-out-file="$work/callgrind.%p" \
        "$launcher" "$machine" -- "${agent_program:-$inventory}" "$@" >/dev/null 2>"$work/valgrind" ||
        { cat "$work/valgrind" >&2; return 1; }
    awk '
        /^ob=/ { object = substr($0, 4) }
        /^cob=/ { callee = substr($0, 5) }
        /^fn=/ { callee = object }
        /^calls=/ {
            getline
            if (object ~ /libTalvane/ && callee ~ /libtalvane-sim|inventory-ports/) simulated += $2
            callee = object
        }
        /^totals:/ { total += $2 }
        END { print total - simulated }' "$work"/callgrind.*
}

echo
echo "Processor time of a process, milliseconds (mean of $runs runs)"
peer=$(cpu_time dmidecode --from-dump "$capture")
peer_start=$(cpu_time dmidecode --version)
agent=$(cpu_time "$file_agent" all)
agent_start=$(cpu_time "$file_agent")
awk -v peer="$peer" -v peer_start="$peer_start" -v agent="$agent" -v agent_start="$agent_start" '
    function row(what, a, b) { printf "  %-28s %10.3f %10.3f %10.2f\n", what, a, b, b / a }
    BEGIN {
        printf "  %-28s %10s %10s %10s\n", "", "dmidecode", "agent", "ratio"
        row("whole process", peer, agent)
        row("starting and ending alone", peer_start, agent_start)
        row("the rest", peer - peer_start, agent - agent_start)
    }'

echo
echo 'Instructions within GetInfo, accesses to the machine not included'
for command in all $commands; do
    printf '  %-14s %12s\n' "$command" "$(instructions "$work/capture" "$command")"
done

echo
echo 'Full tables of small structures: instructions by table size'
sizes=(16384 32768 65535)
for size in "${sizes[@]}"; do
    mkdir "$work/$size"
    bench/big-table.sh "$size" >"$work/$size/machine.txt"
done
printf '  %-14s %12s %12s %12s\n' command "${sizes[@]}"
printf '  %-14s' structures
for size in "${sizes[@]}"; do printf ' %12s' "$(grep -c '^structure' "$work/$size/machine.txt")"; done
echo
slowest=0
for command in $commands; do
    printf '  %-14s' "$command"
    for size in "${sizes[@]}"; do
        cost=$(instructions "$work/$size" "$command")
        printf ' %12s' "$cost"
    done
    echo
    if [ "$cost" -gt "$slowest" ]; then slowest=$cost slowest_command=$command; fi
done
echo "  slowest: $slowest_command"

# Three getters look for the system structure, which these tables do not have: each passes every
# structure once. The difference of two tables leaves finding and copying out.
few=$(grep -c '^structure' "$work/32768/machine.txt")
many=$(grep -c '^structure' "$work/65535/machine.txt")
awk -v few="$few" -v many="$many" -v a="$(instructions "$work/32768" system)" \
    -v b="$(instructions "$work/65535" system)" 'BEGIN {
    printf "  instructions for each structure passed: %.1f\n", (b - a) / (3 * (many - few))
}'

# Every function is looked for in sixteen double words; those that answer are reported.
echo
echo 'PCI: instructions of a report, port accesses not included'
pci_instructions() {
    agent_program=$PWD/$build/inventory-ports BENCH_FUNCTIONS=$1 instructions "$work/capture" pci
}
awk -v none="$(pci_instructions 0)" -v all="$(pci_instructions 64)" 'BEGIN {
    printf "  for each of 2816 functions looked for: %.1f\n", none / 2816
    printf "  for each function reported, besides:   %.1f\n", (all - none) / 64
}'

# The records hold up to 16 fans, 32 voltages and 32 temperatures, a kind's table up to 64.
echo
echo 'Sensors: instructions for reading the repository and for asking for all readings, without'
echo 'the requests'
sensor_instructions() {
    agent_program=$PWD/$build/sensors entry=GetIpmiInfo instructions "$work/sensors-$1" "$2"
}
printf '  %-8s %12s %18s %12s %10s %12s\n' \
    sensors repository 'per further sensor' readings elements 'per element'
for sensors in 1 18 64 255; do
    mkdir "$work/sensors-$sensors"
    bench/many-sensors.sh "$sensors" >"$work/sensors-$sensors/machine.txt"
    once=$(sensor_instructions "$sensors" 1)
    twice=$(sensor_instructions "$sensors" 2)
    repository=$((2 * once - twice))
    first=${first:-$repository}
    awk -v sensors="$sensors" -v repository="$repository" -v first="$first" \
        -v readings=$((twice - once)) '
        function least(a, b) { return a < b ? a : b }
        BEGIN {
            further = sensors == 1 ? "" : sprintf("%.1f", (repository - first) / (sensors - 1))
            elements = least(int((sensors + 2) / 3), 16)
            elements += least(int((sensors + 1) / 3), 32) + least(int(sensors / 3), 32)
            printf "  %-8d %12d %18s %12d %10d %12.1f\n", sensors, repository, further,
                readings, elements, readings / elements
        }'
done

# SPDX-License-Identifier: MIT
#
# To be sourced by what the machines do: asks programs, and puts their answers into /results.
# Set by this file: $payload, $tool and $status, which is 1 when a program has failed.

# shellcheck shell=bash disable=SC2034  # for those that source it
cd /results || exit 1
payload=/payload
tool=$payload/bin/talvane
export LC_ALL=C TERM=linux
status=0

# Keeps what a program prints. One that failed or printed nothing would be compared with nothing.
ask() {  # FILE COMMAND...
    if ! "${@:2}" >"$1" 2>"$1.errors" || [ ! -s "$1" ]; then
        echo "run: '${*:2}' failed or printed nothing:"
        tail -n 5 "$1.errors"
        status=1
        return 1
    fi
}

# The same for a program whose exit status is compared as well.
ask_with_status() {  # FILE COMMAND...
    "${@:2}" >"$1" 2>"$1.errors"
    echo $? >"${1%.*}.status"
}

wait_for_device() {  # DEVICE TENTHS
    local tries
    for ((tries = 0; tries < $2; ++tries)); do
        [ ! -c "$1" ] || return 0
        sleep 0.1
    done
    return 1
}

# Takes the machine along, and reports what the capture answers in its place.
take_along() {  # NAME COMMAND...: a capture, to which its file is appended
    ask_with_status "capture-$1.txt" "${@:2}" "$1.tar.gz"
    ask_with_status "replay-$1.json" "$tool" report --json --machine "$PWD/$1.tar.gz"
}

# Through the kernel's own interfaces: the whole, as the tool chooses, what any agent gets, and what is
# left without root.
read_through_kernel() {
    ask host.json "$tool" report --host --json
    take_along host "$tool" capture --host
    ask chosen.json "$tool" report --json
    ask agent.json "$payload/bin/talvane-host" -- "$tool" report --json
    mkdir -p /tmp/nobody
    chown 65534 /tmp/nobody
    ask_with_status nobody.json env --chdir /tmp/nobody setpriv --reuid 65534 --clear-groups \
        "$tool" report --json
}

# A known load: processor 1 is kept busy, and watched by top at the same time.
measure_load() {
    local busy watcher
    taskset 2 bash -c 'while :; do :; done' &
    busy=$!
    sleep 1
    ask top.txt top -b -1 -d 5 -n 2 -w 200 &
    watcher=$!
    ask load.json "$tool" load --interval 5 --json
    wait $watcher || status=1
    kill $busy
    ask free.txt free
    ask memory.json "$tool" load --interval 1 --json
}

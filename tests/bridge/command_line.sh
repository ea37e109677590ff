#!/bin/sh
# SPDX-License-Identifier: MIT
#
# What the bridge makes of its command line. The program tells what it would serve and as whom.
# Usage: command_line.sh PROGRAM
set -u
program=$1
failures=0

expect() {  # TEXT [ARGUMENT...]: the program's output has the text
    text=$1
    shift
    output=$("$program" "$@" 2>&1)
    case $output in
        *"$text"*) ;;
        *)
            echo "talvane-ipmi-bridge $*: printed '$output' instead of '$text'" >&2
            failures=$((failures + 1))
            ;;
    esac
}

# Only root becomes another user unasked.
user=
[ "$(id -u)" != 0 ] || user=talvane-ipmi
expect "/dev/ipmi0 as ipmi for '$user'"
expect "/dev/ipmi1 as bmc for 'agent'" --device /dev/ipmi1 --name bmc --user agent
expect "/dev/ipmi0 as ipmi for ''" --user ''
expect 'a name, not a path' --name /dev/ipmi
expect 'a name, not a path' --name ''
expect '--nome' --nome ipmi
exit "$failures"

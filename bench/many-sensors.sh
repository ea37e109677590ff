#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Prints the description of a machine with COUNT sensors: fans, voltages and temperatures in turn.
# Usage: many-sensors.sh COUNT
set -eu
awk -v count="$1" 'BEGIN {
    print "bmc kcs"
    for (i = 0; i < count; ++i) {
        printf "sensor %d \"Sensor %d\"\n", i, i
        if (i % 3 == 0) print "type 4\nunit 18\nfactors 50 0 0 0"
        if (i % 3 == 1) print "type 2\nunit 4\nfactors 2 0 0 -2"
        if (i % 3 == 2) print "type 1\nunit 1"
        print "masks 0x3F 0x3F"
    }
    for (i = 0; i < count; ++i) printf "reading %d 100\nthresholds %d 0x3F 5 4 3 200 210 220\n", i, i
}'

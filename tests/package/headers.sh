#!/bin/sh
# SPDX-License-Identifier: MIT
#
# The installed headers compile alone, in each language they promise, as 32-bit code without
# extensions and without a warning. Usage: headers.sh SOURCE_DIR
set -u
cd "$1" || exit 2
warnings='-m32 -pedantic-errors -Werror -Wall -Wextra -Wshadow -Wconversion'
failed=0

# compiles COMPILER LANGUAGE STANDARD HEADER: alone, and twice in one unit
compiles() {
    # shellcheck disable=SC2086  # the warnings are several words
    if ! printf '#include "%s"\n#include "%s"\n' "$4" "$4" |
        "$1" -x "$2" -std="$3" $warnings -I. -fsyntax-only -; then
        echo "$4 does not compile as $3" >&2
        failed=1
    fi
}

for header in Talvane.h InformationRecords.h; do
    for standard in c99 c11 c17; do compiles gcc c $standard $header; done
done
for header in Talvane.h InformationRecords.h Export.h; do
    for standard in c++98 c++11 c++17 c++20; do compiles g++ c++ $standard $header; done
done
for header in SmBios/BiosDataItem.h SmBios/EntryPoint.h SmBios/LocalMemInfo.h SmBios/SmBios.h \
    IPMI/EventCodeTable.h IPMI/FRU.h IPMI/IPMIbase.h IPMI/IPMIsupport.h IPMI/SDR.h IPMI/Sensor.h \
    IPMI/SensorNames.h IPMI/SensorRecords.h GetPciInfo.h LoadMonitor.h PCI/PCIdevice.h PCI/PCIscan.h \
    storage/GetAllPartitionInfo.h storage/GetStorageInfo.h storage/lltostr.h; do
    for standard in c++11 c++17 c++20; do compiles g++ c++ $standard $header; done
done

# A 64-bit build has another layout, which the records refuse.
if echo '#include "InformationRecords.h"' | gcc -m64 -x c -std=c99 -I. -fsyntax-only - 2>/dev/null
then
    echo 'InformationRecords.h accepts a 64-bit build' >&2
    failed=1
fi
exit $failed

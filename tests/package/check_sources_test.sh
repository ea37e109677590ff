#!/bin/sh
# SPDX-License-Identifier: MIT
#
# scripts/check-sources.sh finds each kind of violation, and nothing in a clean tree.
# Usage: check_sources_test.sh SOURCE_DIR
set -u
check=$1/scripts/check-sources.sh
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
cp "$1/.clang-format" "$tree"
mkdir "$tree/SmBios" "$tree/PCI" "$tree/base"
failed=0

source_file() {
    { printf '// SPDX-License-Identifier: MIT\n//\n// A file.\n'; cat; } >"$tree/$1"
}

# finds MESSAGE FILE: the tree with FILE in it is refused with that message
finds() {
    if output=$("$check" "$tree" 2>&1) || ! echo "$output" | grep -q "^$2.*: $1"; then
        echo "$2: expected '$1', got '$output'" >&2
        failed=1
    fi
    rm "$tree/$2"
}

printf '#include <string>\nint Decode();\n' | source_file SmBios/Decoder.cpp
printf '#include <fcntl.h>\n' | source_file SmBios/PhysicalMemory.cpp
if ! output=$("$check" "$tree" 2>&1); then
    echo "a clean tree is refused: $output" >&2
    failed=1
fi

printf '#include <fcntl.h>\n' | source_file SmBios/Touching.cpp
finds 'only the files that touch the machine' SmBios/Touching.cpp
printf '#include <fstream>\n' | source_file Touching.cpp
finds 'only the files that touch the machine' Touching.cpp
printf 'void Probe() {\n    asm volatile("hlt");\n}\n' | source_file SmBios/Port.cpp
finds 'port instructions' SmBios/Port.cpp
printf 'int value = inb(0x70);\n' | source_file SmBios/Port.cpp
finds 'port instructions' SmBios/Port.cpp
printf '#ifndef TALVANE_H\n' | source_file Talvane.h
printf '#ifndef SMBIOS_H\n' | source_file SmBios/SmBios.h
printf '#include "SmBios/SmBios.h"\n' | source_file PCI/Scan.cpp
finds 'this room may not include' PCI/Scan.cpp
printf '#include "../SmBios/SmBios.h"\n' | source_file PCI/Scan.h
finds 'this room may not include' PCI/Scan.h
printf '#include "Talvane.h"\n' | source_file SmBios/Facade.cpp
finds 'this room may not include' SmBios/Facade.cpp
printf '#include "SmBios/SmBios.h"\n' | source_file base/Upward.h
finds 'this room may not include' base/Upward.h
printf '#include "Second.h"\n' | source_file SmBios/First.h
printf '#include "SmBios/First.h"\n' | source_file SmBios/Second.h
finds 'in a circle of includes' SmBios/First.h
rm "$tree/SmBios/Second.h"
printf '// %s%s: later\n' 'TO' 'DO' | source_file SmBios/Later.cpp
finds 'unfinished work' SmBios/Later.cpp
yes '// filler' | head -n 500 | source_file Long.cpp
finds 'at most 500 lines' Long.cpp
printf 'int value;\n' >"$tree/Bare.h"
finds 'first line' Bare.h
printf '// SPDX-License-Identifier: MIT\n\nint value;\n' >"$tree/Undescribed.h"
finds 'no description' Undescribed.h
printf '#!/bin/sh\necho\n' >"$tree/bare.sh"
finds 'does not start' bare.sh
printf 'int  value ;\n' | source_file Untidy.cpp
finds 'not as clang-format' Untidy.cpp
exit $failed

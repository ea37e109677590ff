#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Rules of the sources that a compiler does not know. Prints each violation and fails if there was
# one. Usage: check-sources.sh [FOLDER]; FOLDER is a source tree, by default this one.
set -u
cd "${1:-$(dirname "$0")/..}" || exit 2

# The only library files that touch the machine; all others take bytes and return values.
machine_files='GetPciInfo.cpp
IPMI/IPMIbase.cpp
LoadMonitor.cpp
PCI/IoPrivilege.cpp
SmBios/PhysicalMemory.cpp
storage/DriveAccess.cpp
storage/Llseek.cpp'
# The only library files with assembler: port instructions, and what the compiler refers to.
assembler_files='base/PortIo.h
base/RuntimeReferences.h'
# Symbols' names in declarations are not instructions.
symbol_name='asm\("(_[A-Za-z0-9_]*|sscanf)"\)'

violations=$(mktemp)
trap 'rm -f "$violations"' EXIT

# Every file of the tree: what git tracks, or, where there is no repository, all but build output.
tree() {
    git -c safe.directory='*' ls-files 2>/dev/null ||
        find . -path ./build -prune -o -path ./.git -prune -o -type f -print | sed 's|^\./||'
}
files=$(tree | while read -r file; do [ -f "$file" ] && echo "$file"; done)
if [ -z "$files" ]; then
    echo "$PWD: no source files here" >&2
    exit 2
fi
select_files() { echo "$files" | grep -E "$1"; }
lines_of() { printf '%s\n' "$@" | grep .; }  # of lists that may be empty

cpp_files=$(select_files '\.(cpp|h|c)$')
build_files=$(select_files '(\.sh|\.cmake|\.cmake\.in|CMakeLists\.txt|Makefile|^\.ci/run)$')
library_files=$(lines_of "$cpp_files" | grep -E '^(SmBios/|IPMI/|PCI/|storage/|interface/|load/|base/)?[^/]+$')

report() { sed "s|\$|: $1|" >>"$violations"; }      # of lines naming a place
without() { grep -vxF -e "$1" || true; }
search() { xargs -r grep -nE -e "$1" /dev/null; }    # names come on standard input

# Decoding and touching the machine are kept apart. A header of the system ends in .h, a header of
# the language does not; <stddef.h> serves the C interface.
lines_of "$library_files" | without "$machine_files" |
    search '^ *# *include *<([^>]*\.h|fstream|iostream|filesystem|thread)>' |
    grep -v '<stddef\.h>' | report 'only the files that touch the machine include a system header'
lines_of "$library_files" | without "$assembler_files" |
    search '\basm\b|\b__asm__\b|\b(in|out)[bwl](_p)? *\(' |
    grep -vE "$symbol_name" |
    report 'port instructions are not allowed here'

# Who may include whom: files whose path starts like the first column may include what starts like
# one of the others. The longest first column that fits a file counts; tests may include anything.
include_rules='
Export.h
InformationRecords.h
Talvane.h              InformationRecords.h
base/                  base/
load/                  load/ base/
SmBios/                SmBios/ base/ Export.h InformationRecords.h
IPMI/                  IPMI/ base/ Export.h InformationRecords.h
PCI/                   PCI/ base/ Export.h InformationRecords.h
storage/               storage/ base/ Export.h InformationRecords.h
interface/             interface/ SmBios/ IPMI/ PCI/ storage/ load/ base/ Export.h InformationRecords.h Talvane.h
GetPciInfo.            GetPciInfo.h PCI/ base/ Export.h InformationRecords.h
LoadMonitor.           LoadMonitor.h Talvane.h interface/ load/ base/ Export.h InformationRecords.h
Talvane.cpp            Talvane.h GetPciInfo.h interface/ SmBios/ IPMI/ storage/ base/ Export.h InformationRecords.h
archive/               archive/
simulator/base/        simulator/base/
simulator/bmc/         simulator/bmc/ simulator/base/
simulator/machine/     simulator/machine/ simulator/bmc/ simulator/base/
simulator/description/ simulator/description/ simulator/machine/ simulator/bmc/ simulator/base/ simulator/host/Ways.h archive/
simulator/host/        simulator/host/ simulator/machine/ simulator/bmc/ simulator/base/ transport/
simulator/process/     simulator/process/ simulator/machine/ simulator/bmc/ simulator/base/
simulator/             simulator/
tools/base/            tools/base/
tools/library/         tools/library/ tools/base/ Talvane.h InformationRecords.h IPMI/
tools/sensors/         tools/sensors/ tools/library/ tools/base/ base/ IPMI/
tools/doctor/          tools/doctor/ tools/base/ Talvane.h InformationRecords.h transport/
tools/health/          tools/health/ tools/sensors/ tools/library/ tools/base/
tools/records/         tools/records/ tools/sensors/ tools/library/ tools/base/ Talvane.h InformationRecords.h PCI/PCIscan.h
tools/html/            tools/html/ tools/health/ tools/records/ tools/sensors/ tools/library/ tools/base/
tools/metrics/         tools/metrics/ tools/records/ tools/sensors/ tools/library/ tools/base/
tools/capture/         tools/capture/ tools/sensors/ tools/library/ tools/base/ Talvane.h InformationRecords.h PCI/PCIscan.h base/ archive/
tools/changes/         tools/changes/ tools/records/ tools/sensors/ tools/library/ tools/base/ Talvane.h InformationRecords.h
tools/sources/         tools/sources/ tools/library/ tools/base/ base/
tools/                 tools/ archive/ Talvane.h InformationRecords.h simulator/Launcher.h
transport/             transport/
bridge/                bridge/ transport/
bench/                 bench/ Talvane.h IPMI/IPMIsupport.h PCI/PCIscan.h
vm/                    Talvane.h
fuzz/machine/          fuzz/machine/ fuzz/Input.h Talvane.h GetPciInfo.h InformationRecords.h SmBios/ IPMI/ PCI/ storage/ interface/ base/
fuzz/ports/            fuzz/machine/
fuzz/output/           fuzz/output/ fuzz/machine/ fuzz/Input.h tools/
fuzz/                  fuzz/ Talvane.h GetPciInfo.h InformationRecords.h SmBios/ IPMI/ PCI/ load/ base/ archive/ simulator/ transport/ bridge/ tools/
examples/              Talvane.h
'
includes=$(lines_of "$cpp_files" | xargs -r grep -HoE '^ *# *include *"[^"]+"' 2>/dev/null |
    sed -E 's/^([^:]*):.*"(.*)"/\1 \2/')
# Pairs of includer and included file. A name is that of a file of the tree or, as in the installed
# headers, is relative to its includer.
# The files come in a stream of their own: there can be too many for a command line.
resolved=$({ lines_of "$files" && echo && lines_of "$includes"; } | awk '
    $0 == "" { areIncludes = 1; next }
    !areIncludes { known[$0] = 1; next }
    {
        folder = $1
        if (!sub("[^/]*$", "", folder)) folder = ""
        path = folder $2
        while (sub("[^/]+/\\.\\./", "", path)) {}
        if ($2 in known) print $1, $2
        else if (path in known) print $1, path
    }')
lines_of "$resolved" | awk -v rules="$include_rules" '
    BEGIN {
        count = split(rules, line, "\n")
        for (i = 1; i <= count; ++i) {
            words = split(line[i], word, " ")
            for (j = 1; j <= words; ++j) allowed[word[1], j - 1] = word[j]
            if (words > 0) { size[word[1]] = words - 1 }
        }
    }
    {
        room = ""
        for (start in size)
            if (index($1, start) == 1 && length(start) > length(room)) room = start
        if (room == "") next
        for (i = 1; i <= size[room]; ++i) if (index($2, allowed[room, i]) == 1) next
        print $1 " includes " $2
    }' | report 'this room may not include that one'
lines_of "$resolved" | tsort 2>&1 >/dev/null | sed -n 's/^tsort: \([^:]*\.[a-z]*\)$/\1/p' |
    report 'in a circle of includes'

# What is left to do is not noted in the sources.
lines_of "$cpp_files" "$build_files" | without scripts/check-sources.sh |
    search '\b(TODO|FIXME|XXX|HACK)\b' | report 'unfinished work'

lines_of "$cpp_files" "$build_files" | xargs -r awk 'FNR == 501 { print FILENAME; nextfile }' |
    report 'at most 500 lines'

# First line of a source file; scripts have their interpreter before it.
empty_among() { while read -r file; do [ -s "$file" ] || echo "$file"; done; }
{
    lines_of "$cpp_files" | empty_among
    lines_of "$cpp_files" | xargs -r awk '
        FNR == 1 && $0 != "// SPDX-License-Identifier: MIT" { print FILENAME; nextfile }'
} | report 'first line is not // SPDX-License-Identifier: MIT'
lines_of "$cpp_files" |
    xargs -r awk 'FNR == 2 && $0 != "//" || FNR == 3 && !/^\/\/ / { print FILENAME; nextfile }' |
    report 'no description follows the first line'
{
    lines_of "$build_files" | empty_among
    lines_of "$build_files" | xargs -r awk '
        FNR == 1 { if (unmarked != "") print unmarked; unmarked = FILENAME }
        FNR <= 2 && $0 == "# SPDX-License-Identifier: MIT" { unmarked = "" }
        END { if (unmarked != "") print unmarked }'
} | report 'does not start with # SPDX-License-Identifier: MIT'

if command -v clang-format >/dev/null; then
    lines_of "$cpp_files" | xargs -r -P "$(nproc)" -n 40 clang-format --dry-run -Werror 2>&1 |
        sed -n 's/^\([^: ]*\):[0-9]*:[0-9]*: error: .*/\1/p' | sort -u |
        report 'not as clang-format writes it'
else
    echo 'clang-format is not installed' | report 'scripts/install-packages.sh test brings it'
fi

if [ -s "$violations" ]; then
    cat "$violations" >&2
    exit 1
fi

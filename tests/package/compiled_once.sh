#!/bin/sh
# SPDX-License-Identifier: MIT
#
# No source file is compiled twice with the same options; files that are compiled as one are looked at
# one by one. Usage: compiled_once.sh BUILD_DIR
set -eu
jq -r '.[] | [.file, .command] | @tsv' "$1/compile_commands.json" | awk -F '\t' '
    function note(source) {
        ++compiled
        if (options SUBSEP source in seen) {
            print source ": compiled twice with " options
            failed = 1
        }
        seen[options, source]
    }
    {
        options = $2
        sub(/ -o [^ ]+/, "", options)
        sub(/ -c .*/, "", options)
        if ($1 !~ /\/Unity\/[^\/]*$/) { note($1); next }
        while ((getline line <$1) > 0)
            if (split(line, part, "\"") > 2 && line ~ /^#include/) note(part[2])
        close($1)
    }
    END {
        if (compiled < 100) { print "only " compiled + 0 " files found"; failed = 1 }
        exit failed
    }' >&2

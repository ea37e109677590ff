#!/bin/sh
# SPDX-License-Identifier: MIT
#
# The man pages name everything there is: each exported name, command code, record and field with its
# offset, each option and command of the programs, and each statement of machine files; and no option
# that there is not. Usage: man_reference.sh SOURCE_DIR TOOL SIMULATOR HOST BRIDGE
set -u
source=$1 tool=$2 simulator=$3 host=$4 bridge=$5
. "$(dirname "$0")/scratch.sh"
# A page in one spelling: roff writes a hyphen of an option as \-.
for page in "$source"/docs/man/*; do
    sed 's/\\-/-/g' "$page" >"$work/${page##*/}"
done

# names PAGE MACROS NAME: the page has the name after one of these macros, or in a list after one
names() {
    grep -qE "(^|[ .])($2) ([A-Za-z_0-9]+ , ((Fn|Va|Vt) )?)*$3( |\$)" "$work/$1" ||
        fail "$1 does not name $3"
}

# Exported names: functions (Fn), classes (Vt) and data (Va).
exported=$(sed -n 's/^ *"\{0,1\}\([A-Za-z_]*\)\(::\*\|(.*\)\{0,1\}"\{0,1\};$/\1/p' "$source/Talvane.map")
for name in $exported; do
    names talvane.3 'Fn|Vt|Va' "$name"
done
for name in $(sed -n 's/.*TALVANE_API int \([A-Za-z]*\)(.*/\1/p' "$source/Talvane.h"); do
    grep -qE "^\.Nm $name( ,)?\$" "$work/talvane.3" || fail "talvane.3 has no $name under NAME"
    grep -q "^\.Fn $name [\"v]" "$work/talvane.3" || fail "talvane.3 has no $name under SYNOPSIS"
    grep -q "^\.It Fn $name\$" "$work/talvane.3" || fail "talvane.3 does not explain $name"
done
[ "$(echo "$exported" | wc -l)" -gt 30 ] || fail 'Talvane.map is not understood'

# Command codes with their records, and the other constants.
sed -n 's/^#define \(TALVANE_[A-Z]*\) *\(0x[0-9]*\)UL *\/\* \([A-Za-z]*\) \*\/$/.It Dv \1 Ta \2 Ta Vt \3/p' \
    "$source/Talvane.h" >"$work/codes"
grep '^\.It Dv TALVANE_' "$work/talvane.3" | diff -u "$work/codes" - >&2 ||
    fail 'talvane.3 has other command codes than Talvane.h'
[ "$(wc -l <"$work/codes")" -gt 10 ] || fail 'Talvane.h is not understood'
sed -n 's/^ *\(THRESHOLD_[A-Z_]*\) = \([0-9]*\),\{0,1\}$/\1 Pq \2/p
        s/^#define \(TALVANE_WATCHDOG_[A-Z]*\) *\([0-9]*\)$/\1 Pq \2/p' \
    "$source/InformationRecords.h" >"$work/constants"
while read -r constant; do
    grep -q "Dv $constant" "$work/talvane.3" || fail "talvane.3 does not name $constant"
done <"$work/constants"
[ "$(wc -l <"$work/constants")" = 8 ] || fail 'InformationRecords.h is not understood'

# Records, one field a line: record, declaration, offset. `}` stands for the size.
gcc -fpreprocessed -dD -E -P "$source/InformationRecords.h" 2>/dev/null | awk '
    /^typedef struct/ { record = $3; next }
    /^}/ { record = "" }
    record != "" { sub(/^ */, ""); name = $0; sub(/(\[[0-9]+\])?;$/, "", name); sub(/.* /, "", name)
                   line[++count] = record " " $0; key[count] = record "." name }
    /^TALVANE_AT/ { split($0, part, /[(), ]+/); offset[part[2] "." part[3]] = part[4] }
    /^TALVANE_SIZE/ { split($0, part, /[(), ]+/); print part[2] " } " part[3] }
    END { for (i = 1; i <= count; ++i) print line[i], offset[key[i]] }' | sort >"$work/header"
sed -n '/^\.Sh RECORDS/,/^\.Sh EX/p' "$work/talvane.3" |
    sed -n 's/^typedef struct \([A-Za-z_]*\) {  *\/\* \([0-9]*\) bytes \*\/$/@\1 } \2/p
            s/^    \(.*;\)  *\/\*  *\([0-9]*\).* \*\/$/\1 \2/p' |
    awk '/^@/ { record = substr($1, 2); print substr($0, 2); next } { print record, $0 }' |
    sort >"$work/records"
diff -u "$work/header" "$work/records" >&2 || fail 'talvane.3 has other records than InformationRecords.h'
[ "$(wc -l <"$work/header")" -gt 100 ] || fail 'InformationRecords.h is not understood'

# The long options of a help text.
options() { sed -n 's/^ *\(-[a-z],\)\{0,1\}--\([a-z-]*\).*/\2/p' "$1"; }
# has_options PAGE HELP: the page explains the options of the help text, and no others
has_options() {
    for option in $(options "$2" | sort -u); do
        grep -qE "^\.It Fl -$option( |\$)" "$work/$1" || fail "$1 does not explain --$option"
    done
    options "$2" | sort -u >"$work/known"
    echo version >>"$work/known"
    for option in $(grep -oE '(^|[ .])Fl -[a-z-]+' "$work/$1" | sed 's/.*Fl -//' | sort -u); do
        grep -qxF -e "$option" "$work/known" || fail "$1 explains --$option, which there is not"
    done
}
"$simulator" --help >"$work/help" || fail "$simulator --help fails"
has_options talvane-sim.1 "$work/help"
"$host" --help >"$work/help" || fail "$host --help fails"
has_options talvane-host.1 "$work/help"
"$bridge" --help >"$work/help" || fail "$bridge --help fails"
has_options talvane-ipmi-bridge.8 "$work/help"

# The tool's commands, and those below them.
commands_of() { sed -n '/^Commands:/,/^$/s/^  \([a-z]*\) .*/\1/p' "$1"; }
"$tool" --help >"$work/all" || fail "$tool --help fails"
commands=$(commands_of "$work/all")
for command in $commands; do
    "$tool" "$command" --help >"$work/help-$command"
    cat "$work/help-$command" >>"$work/all"
    below=$(commands_of "$work/help-$command")
    for word in $below; do
        "$tool" "$command" "$word" --help >>"$work/all"
        grep -qE "Cm $command $word( |\$)" "$work/talvane.1" || fail "talvane.1 does not name $command $word"
    done
    # A command that only has others below it does nothing itself.
    [ "$command" = threshold ] || grep -qxE "\.It Cm $command( Ar [A-Z]+)?" "$work/talvane.1" ||
        fail "talvane.1 does not explain $command"
done
has_options talvane.1 "$work/all"
for command in $(sed -n 's/^\.It Cm \([a-z]*\).*/\1/p' "$work/talvane.1" | sort -u); do
    echo "$commands" | grep -qx "$command" || fail "talvane.1 explains $command, which there is not"
done
[ "$(echo "$commands" | wc -l)" -gt 15 ] || fail 'the help of the tool is not understood'

# The bundled machines: the simulator's page says what each is for.
for machine in "$source"/machines/*; do
    name=${machine##*/}
    grep -qE "^\.Pa (.* )?$name( |\$)" "$work/talvane-sim.1" || fail "talvane-sim.1 does not name $name"
done

# Statements of machine files.
statements=$(cat "$source"/simulator/description/*Statements.cpp | tr '{' '\n' |
    sed -n 's/^"\([a-z0-9]*\)", Read[A-Za-z]*}.*/\1/p')
for word in $statements; do names talvane-machine.5 'It Cm' "$word"; done
[ "$(echo "$statements" | wc -l)" -gt 35 ] || fail 'the statements are not understood'
exit $failed

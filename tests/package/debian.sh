#!/bin/sh
# SPDX-License-Identifier: MIT
#
# The Debian packages are complete without being built: every installed file belongs to one of them, no
# list names a file that there is not, and versions and symbols are those of the project.
# Usage: debian.sh SOURCE_DIR BUILD_DIR CMAKE
set -u
source=$1 build=$2 cmake=$3
. "$(dirname "$0")/scratch.sh"

# The tree as debhelper meets it, and with the bridge's files, which a project of its own installs.
"$cmake" --install "$build" --prefix "$work/usr" >"$work/log" 2>&1 || { cat "$work/log" >&2; exit 1; }
mkdir "$work/usr/lib/i386-linux-gnu"
for entry in "$work"/usr/lib/*; do
    case ${entry##*/} in i386-linux-gnu | systemd) continue ;; esac
    mv "$entry" "$work/usr/lib/i386-linux-gnu"
done
for file in sbin/talvane-ipmi-bridge share/man/man8/talvane-ipmi-bridge.8 \
    lib/systemd/system/talvane-ipmi-bridge.service lib/sysusers.d/talvane-ipmi-bridge.conf \
    lib/udev/rules.d/60-talvane-ipmi-bridge.rules; do
    mkdir -p "$work/usr/${file%/*}"
    touch "$work/usr/$file"
done

cd "$work" || exit 2
find usr ! -type d | sort >files
for list in "$source"/debian/*.install; do
    while read -r pattern _; do
        # shellcheck disable=SC2086  # a pattern of files
        set -- $pattern
        [ -e "$1" ] || fail "${list##*/} names $pattern, which is not installed"
        find "$@" ! -type d
    done <"$list"
done | sort >listed
[ -z "$(uniq -d listed)" ] || fail "in two packages: $(uniq -d listed)"
missing=$(comm -23 files listed)
[ -z "$missing" ] || fail "in no package: $missing"
for list in "$source"/debian/*.docs "$source"/debian/*.examples; do
    while read -r file; do
        [ -e "$source/$file" ] || fail "${list##*/} names $file, which there is not"
    done <"$list"
done

# The documents that a man page refers to come with the page.
for page in "$source"/docs/man/*; do
    for document in $(sed -n 's/\\-/-/g; s/^\.Pa \([a-z-]*\.md\).*/\1/p' "$page"); do
        package=$(grep -lx "usr/share/man/man${page##*.}" "$source"/debian/*.install)
        package=${package%.install}
        grep -qx "docs/$document" "$package.docs" ||
            fail "${page##*/} refers to $document, which ${package##*/} does not contain"
    done
done

version=$(sed -n '1s/^talvane (\(.*\)) .*/\1/p' "$source/debian/changelog")
grep -q "^project(Talvane VERSION $version " "$source/CMakeLists.txt" ||
    fail "the packages have version $version, and CMakeLists.txt another"
grep -q "^project(TalvaneIpmiBridge VERSION $version " "$source/bridge/CMakeLists.txt" ||
    fail "the packages have version $version, and the bridge another"

cut -d ' ' -f 2 "$source/tests/symbols.expected" | sort >expected
sed -n 's/^ \(.*\)@Base .*/\1/p' "$source/debian/libtalvane1.symbols" | sort |
    diff -u expected - >&2 || fail 'the package lists other symbols; scripts/record-symbols.sh records them'
exit $failed

#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Builds the Debian packages and, for other distributions, an archive of the library with its headers,
# checks them with lintian, and prints their sizes. All of it is left in build/packages. With
# `twice` everything is built again in another folder and must be the same, byte for byte.
# Builds from the files that git tracks, as they are now. Usage: package.sh [twice]
set -eu
cd "$(dirname "$0")/.."
case "$*" in '' | twice) ;; *) echo 'usage: package.sh [twice]' >&2; exit 2 ;; esac
export LC_ALL=C TZ=UTC PATH="$PATH:/usr/sbin:/sbin"

scripts/install-packages.sh package >&2
results=$PWD/build/packages
version=$(dpkg-parsechangelog -S Version)
archive=talvane-$version-linux-i686
# The moment of the last change, which stands in the packages for that of the build.
SOURCE_DATE_EPOCH=$(dpkg-parsechangelog -S Timestamp)
export SOURCE_DATE_EPOCH
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# Taken once, so that both builds see the same, whatever is edited meanwhile.
mkdir "$scratch/sources"
git ls-files -z | tar --null --files-from=- -c | tar -x -C "$scratch/sources"
copy_sources() {  # FOLDER
    mkdir -p "$1"
    cp -a "$scratch/sources/." "$1"
}

# The packages are built for each architecture that this computer can build for.
architectures=i386
[ "$(dpkg --print-architecture)" != amd64 ] || architectures='i386 amd64'

build_debian() {  # FOLDER
    for architecture in $architectures; do
        copy_sources "$1/$architecture/talvane"
        # -d: install-packages.sh has seen to what the build needs. Its libraries for i386 are those
        # that programs run with, which is enough to link.
        (cd "$1/$architecture/talvane" && dpkg-buildpackage -B -d -us -uc -a"$architecture")
        mv "$1/$architecture"/*.deb "$1/$architecture"/*.changes "$1/$architecture"/*.buildinfo "$1"
        rm -r "${1:?}/$architecture"
    done
}

# A tree that may be unpacked anywhere: pkg-config and CMake find the library from where their files are.
build_archive() {  # FOLDER
    copy_sources "$1/source"
    cmake -S "$1/source" -B "$1/build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
        -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=0 \
        -DCMAKE_TOOLCHAIN_FILE="$1/source/cmake/i686-linux.cmake" \
        -DCMAKE_CXX_FLAGS_RELWITHDEBINFO='-O2 -DNDEBUG' -DCMAKE_INSTALL_LIBDIR=lib \
        -DCMAKE_CXX_FLAGS="-m32 -march=i686 -U_FORTIFY_SOURCE -ffile-prefix-map=$1/source=." \
        -DTALVANE_BUILD_TOOLS=OFF -DTALVANE_BUILD_SIMULATOR=OFF -DTALVANE_BUILD_TESTS=OFF
    cmake --build "$1/build"
    cmake --install "$1/build" --strip --prefix "$1/$archive"
    cp LICENSE CHANGELOG.md README.md "$1/$archive"
    tar -C "$1" --sort=name --owner=0 --group=0 --numeric-owner --mode=go=rX,u+rw \
        --mtime="@$SOURCE_DATE_EPOCH" -c "$archive" | gzip -9n >"$1/$archive.tar.gz"
    rm -r "$1/source" "$1/build" "${1:?}/$archive"
}

build_all() {  # FOLDER
    mkdir -p "$1"
    build_debian "$1"
    build_archive "$1"
}

build_all "$scratch/first" >&2
if [ "$*" = twice ]; then
    build_all "$scratch/a-second-folder" >&2
    for file in "$scratch"/first/*.deb "$scratch"/first/*.tar.gz; do
        cmp "$file" "$scratch/a-second-folder/${file##*/}" >&2 || differ=1
    done
    [ -z "${differ-}" ] || exit 1
    echo 'Built twice in different folders: the same, byte for byte.'
fi
rm -rf "$results"
mkdir -p "$results"
mv "$scratch"/first/* "$results"
# Without --allow-root lintian refuses to run as root.
lintian --allow-root --fail-on error,warning "$results"/*.changes

echo "In $results:"
printf '%10s %12s  %s\n' bytes installed file
for file in "$results"/*.deb "$results"/*.tar.gz; do
    case $file in
        *.deb) installed="$(dpkg-deb -f "$file" Installed-Size) KiB" ;;
        *) installed="$(($(gzip -dc "$file" | wc -c) / 1024)) KiB" ;;
    esac
    printf '%10s %12s  %s\n' "$(wc -c <"$file")" "$installed" "${file##*/}"
done

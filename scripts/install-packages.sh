#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Installs the Debian packages that a task needs and that are missing; does nothing when none is.
# A bare Debian 12 is enough to start from.
# Usage: install-packages.sh build|test|bridge|sanitizers|coverage|bench|lint|vm|fleet|package|page|fuzz...
set -eu

build='cmake ninja-build g++ g++-multilib libcli11-dev nlohmann-json3-dev'
# make and pkg-config build the example agent; jq reads the tool's JSON, and jsonschema validates it;
# man formats the man pages.
test="$build googletest clang-format abigail-tools binutils make pkg-config dmidecode jq man-db"
test="$test python3-jsonschema"
# The sanitizers are those of clang, of either word size.
sanitizers='clang-14 libclang-rt-14-dev'
# clang counts what is reached, llvm-cov shows it.
coverage="$sanitizers llvm-14 python3"
# The bridge's own tests.
bridge='cmake ninja-build g++ libcli11-dev libfuse3-dev pkg-config googletest'
# qemu-user counts instructions, valgrind those within one call.
bench="$build valgrind dmidecode qemu-user"
lint="$build googletest clang-tidy python3"
# The emulated machine is put together from Debian's packages.
vm="$build pkg-config libfuse3-dev qemu-system-x86 openipmi kmod cpio e2fsprogs python3"
vm="$vm python3-jsonschema"
# Prometheus and its companions are fetched and not installed: their packages start services.
fleet="$build python3"
# A browser for the page of `report --html`; npm, of any origin, brings what checks the page.
page="$build chromium"
command -v npm >/dev/null || page="$page npm"
# libFuzzer comes with the sanitizers.
fuzz="$build $sanitizers python3"
# Debian packages for i386 and amd64: lintian and debhelper; debootstrap for the roots that they are
# tried in. What the packages depend on is read from the i386 libraries, which 64-bit systems install
# beside their own, and their programs are stripped by an i386 binutils.
package="$build debhelper lintian dpkg-dev binutils debootstrap pkg-config libfuse3-dev man-db"
package="$package libc6:i386 libgcc-s1:i386 libstdc++6:i386 libfuse3-3:i386"
[ "$(dpkg --print-architecture)" = i386 ] || package="$package binutils-i686-linux-gnu"

wanted=
for task in "$@"; do
    case $task in
        build) wanted="$wanted $build" ;;
        test) wanted="$wanted $test" ;;
        sanitizers) wanted="$wanted $sanitizers" ;;
        coverage) wanted="$wanted $coverage" ;;
        bridge) wanted="$wanted $bridge" ;;
        bench) wanted="$wanted $bench" ;;
        lint) wanted="$wanted $lint" ;;
        vm) wanted="$wanted $vm" ;;
        fleet) wanted="$wanted $fleet" ;;
        package) wanted="$wanted $package" ;;
        page) wanted="$wanted $page" ;;
        fuzz) wanted="$wanted $fuzz" ;;
        *)
            echo "install-packages.sh: unknown task '$task'" \
                '(build, test, bridge, sanitizers, coverage, bench, lint, vm, fleet, package, page or fuzz)' >&2
            exit 2
            ;;
    esac
done

# In any architecture, unless the name says which.
installed() { dpkg-query -W -f='${db:Status-Status}\n' "$1" 2>/dev/null | grep -qx installed; }
missing=
for package in $wanted; do
    case " $missing " in *" $package "*) continue ;; esac
    installed "$package" || missing="$missing $package"
done
[ -n "$missing" ] || exit 0

echo "Installing:$missing"
as_root=
if [ "$(id -u)" != 0 ]; then
    if ! command -v sudo >/dev/null; then
        echo "These packages are missing and installing them takes root:$missing" >&2
        exit 1
    fi
    echo 'sudo may ask for your password.'
    as_root=sudo
fi

case $missing in
    *:i386*)
        [ "$(dpkg --print-architecture)" = i386 ] || $as_root dpkg --add-architecture i386
        ;;
esac
# One package source that does not answer need not matter: installing tells.
$as_root apt-get update -q ||
    echo 'warning: apt-get update failed in part; going on with what is known' >&2
# shellcheck disable=SC2086  # several words
$as_root env DEBIAN_FRONTEND=noninteractive \
    apt-get install -q -y --no-install-recommends $missing

#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Unpacks Debian's 32-bit Python into a cache folder, so that agents in Python can be tested on a
# 64-bit system, and prints the interpreter's path. Nothing is installed. With --cached it only says
# where the interpreter is, and fails when it is not there. TALVANE_PYTHON_CACHE names the folder.
# The interpreter preloads the library that PYTHON_PRELOAD names. Usage: fetch-python.sh [--cached]
set -eu
export LC_ALL=C
scripts=$(realpath "$(dirname "$0")")
cache=${TALVANE_PYTHON_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/talvane-python}
python=$cache/python

if [ -x "$python" ]; then
    echo "$python"
    exit 0
fi
[ "${1-}" != --cached ] || exit 1

rm -rf "$cache"
mkdir -p "$cache/root"
cd "$cache"
# shellcheck source=scripts/private-apt.sh
. "$scripts/private-apt.sh"
{
    start_apt "$cache/apt" i386 &&
        apt-get -q download python3.11-minimal libpython3.11-minimal libpython3.11-stdlib \
            libffi8 libexpat1 zlib1g &&
        for package in *.deb; do dpkg-deb -x "$package" root; done
} >&2 || { echo "fetch-python.sh: cannot get a 32-bit Python from $mirror" >&2; exit 1; }
rm -rf apt ./*.deb

# The C library is that of g++-multilib.
cat >start <<END
#!/bin/sh
export LD_LIBRARY_PATH=$cache/root/usr/lib/i386-linux-gnu:$cache/root/lib/i386-linux-gnu
export PYTHONHOME=$cache/root/usr
exec env \${PYTHON_PRELOAD:+LD_PRELOAD="\$PYTHON_PRELOAD"} "$cache/root/usr/bin/python3.11" "\$@"
END
chmod +x start
mv start "$python"
echo "$python"

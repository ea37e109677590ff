#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Writes the page of `talvane report --html` for every bundled machine, and shows each in headless
# Chromium: light, dark, narrow and printed. Keeps the screenshots in build/pages. Fails when a page
# asks for another file, writes to the console, or fails a check of axe-core for accessibility.
# puppeteer-core and axe-core come from npm into a cache outside the tree; where npm cannot be
# reached, Chromium takes the screenshots by itself, and accessibility is not checked.
# Usage: look-at-page.sh [TALVANE]; by default the tool is built.
set -eu
cd "$(dirname "$0")/.."
scripts/install-packages.sh page >&2
if [ $# -gt 0 ]; then
    talvane=$1
else
    cmake --preset run >/dev/null
    cmake --build --preset run --target talvane
    talvane=build/run/tools/talvane
fi
pages=$PWD/build/pages
cache=${XDG_CACHE_HOME:-$HOME/.cache}/talvane-pages
mkdir -p "$pages" "$cache"
rm -f "$pages"/*

for machine in machines/* tests/tools/golden/*; do
    [ -f "$machine/machine.txt" ] || continue
    # 1: the machine lacks a source, and the page says which.
    "$talvane" report --html "$pages/${machine##*/}.html" --machine "$machine" 2>/dev/null ||
        [ $? = 1 ]
done

if npm install --silent --no-audit --no-fund --prefix "$cache" puppeteer-core@25 axe-core@4 >&2; then
    node scripts/look-at-page.mjs "$cache" "$(command -v chromium)" "$pages"/*.html
    exit
fi
echo 'npm cannot be reached: screenshots only' >&2
for page in "$pages"/*.html; do
    chromium --headless --no-sandbox --disable-gpu --enable-logging=stderr --window-size=1280,4000 \
        --screenshot="${page%.html}-light.png" "file://$page" 2>"$pages/log"
    if grep CONSOLE "$pages/log" >&2; then exit 1; fi
done

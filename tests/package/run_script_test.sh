#!/bin/sh
# SPDX-License-Identifier: MIT
#
# scripts/run.sh hands the tool the machine that its caller means, from whatever folder it is called,
# and leaves the tests alone. The commands that install and build are replaced by ones that do nothing.
# Usage: run_script_test.sh SOURCE_DIR
set -u
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
tree=$work/tree
mkdir -p "$tree/scripts" "$tree/build/run/tools" "$tree/machines/full-server" "$work/commands" \
    "$work/elsewhere/own machine"
cp "$1/scripts/run.sh" "$tree/scripts"
failed=0

command_file() {  # FILE: a command of these lines
    { echo '#!/bin/sh'; cat; } >"$1"
    chmod +x "$1"
}
command_file "$tree/scripts/install-packages.sh" <<'END'
END
command_file "$tree/scripts/enable-32-bit.sh" <<'END'
echo native
END
command_file "$work/commands/cmake" <<'END'
echo "cmake $*"
END
command_file "$tree/build/run/tools/talvane" <<'END'
[ -d "$3" ] || { echo "no folder $3"; exit 1; }
echo "$1 $2 $(cd "$3" && pwd)"
END

# shows FOLDER MACHINE ARGUMENTS...: run.sh, called in the folder, reports on the machine
shows() {
    folder=$1 machine=$2
    shift 2
    output=$(cd "$folder" && PATH=$work/commands:$PATH "$tree/scripts/run.sh" "$@" 2>"$work/build")
    if [ "$output" != "report --machine $machine" ]; then
        echo "in $folder, run.sh $*: expected $machine, got '$output'" >&2
        failed=1
    fi
}
shows "$tree" "$tree/machines/full-server"
shows "$work/elsewhere" "$tree/machines/full-server"
shows "$tree" "$tree/machines/full-server" machines/full-server
shows "$work/elsewhere" "$work/elsewhere/own machine" 'own machine'
shows "$work/elsewhere/own machine" "$work/elsewhere/own machine" .
shows "$tree" "$work/elsewhere/own machine" "$work/elsewhere/own machine"

if [ "$(cat "$work/build")" != 'cmake --preset run
cmake --build --preset run' ]; then
    echo "run.sh builds otherwise: $(cat "$work/build")" >&2
    failed=1
fi
exit $failed

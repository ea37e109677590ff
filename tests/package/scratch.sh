# SPDX-License-Identifier: MIT
#
# For the tests to source: a folder $work that goes with the process, and fail MESSAGE, which prints
# it and sets $failed, the status to exit with.
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0
fail() {
    echo "$*" >&2
    failed=1
}

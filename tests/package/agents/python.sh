#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Runs the agent in Python with the 32-bit Python that scripts/fetch-python.sh has put into the
# cache; skipped without it. Usage: python.sh SERVER LIBRARY
set -eu
cd "$(dirname "$0")"
python=$(../../../scripts/fetch-python.sh --cached) || {
    echo 'there is no 32-bit Python here; scripts/fetch-python.sh gets one'
    exit 77
}
PYTHON_PRELOAD=$1 "$python" agent.py "$2"

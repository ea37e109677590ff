#!/bin/sh
# SPDX-License-Identifier: MIT
#
# Prometheus' own tool takes the metrics of every machine, the rules and the alerts, and finds that
# they do what their tests say. Skipped where promtool is neither installed nor fetched by
# scripts/fleet-test.sh. Usage: promtool.sh SOURCE_DIR
set -u
source=$1
promtool=$(command -v promtool) || promtool=$source/build/fleet/packages/usr/bin/promtool
[ -x "$promtool" ] || exit 77
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0
passes() {  # WHAT COMMAND...
    what=$1
    shift
    "$@" >"$work/log" 2>&1 && return
    cat "$work/log" >&2
    echo "promtool finds fault with $what" >&2
    failed=1
}

pages=0
for page in "$source"/tests/tools/golden/metrics/*.prom; do
    # What differs from run to run is recorded as a word.
    sed 's/ TIME$/ 1/; s/ VERSION$/{version="1.0.0"} 1/' "$page" >"$work/page"
    passes "$page" sh -c "'$promtool' check metrics <'$work/page'"
    pages=$((pages + 1))
done
[ $pages -gt 10 ] || { echo 'no recorded pages' >&2; failed=1; }
cd "$source/fleet/prometheus" || exit 2
passes 'the rules' "$promtool" check rules talvane-rules.yml talvane-alerts.yml
passes 'what the rules do' "$promtool" test rules talvane.test.yml
passes 'the queries' "$source/tests/package/fleet_queries.py" "$source" "$promtool"
exit $failed

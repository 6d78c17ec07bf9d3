#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Measures the library and prints one table: what, beside what, limit, measured, met or not.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

usage() {
    cat <<'TEXT'
Usage: ./bench.sh [--short | --plot | load [--short]]

  (none)    everything, some minutes
  --short   less of everything, under a minute when built
  --plot    nothing of that, but draws docs/performance.svg
  load      a minute of load on viewlibd (with --short five seconds), beside nginx; 1 GB and more on the disk meanwhile

Builds in build-bench. Missing Debian packages are installed first. Exit status: 1 when a figure is so far from its
limit that noise cannot be the reason ("FAR OFF"), 2 for wrong arguments, 3 when something could not be measured.
TEXT
}

build=build-bench
log=$build/bench.log
rows=$build/rows.tsv
status=0

# build_programs VIEWLIB BUILD-ARGUMENT...: with the development view library (ON) or without (OFF).
build_programs() {
    local begin=$SECONDS viewlib=$1
    shift
    mkdir -p "$build"
    if ! { cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DPUBSEC_BUILD_BENCH=ON -DPUBSEC_BUILD_TESTS=OFF \
        -DPUBSEC_BUILD_VIEWLIB="$viewlib" -DPUBSEC_BUILD_EXAMPLES=OFF &&
        cmake --build "$build" -j "$(nproc)" "$@"; } >"$log" 2>&1; then
        tail -n 30 "$log" >&2
        echo "bench.sh: the build failed, see $log" >&2
        exit 3
    fi
    echo "built in $((SECONDS - begin)) s"
}

# measure NAME: one program. Answers that the library leaves to libcurl go to the log.
measure() {
    local result=0
    echo
    echo "$1"
    "$build/bin/bench_$1" --rows "$rows" "${options[@]}" 2>&1 >>"$log" | grep -E '^ {2}|^bench' || true
    result=${PIPESTATUS[0]}
    [ "$result" -le "$status" ] || status=$result
}

table() {
    awk -F '\t' 'BEGIN { print "| what | beside | limit | measured | |"; print "|---|---|---|---|---|" }
        { printf "| %s | %s | %s | %s%s | %s |\n", $1, $2, $3, $4, $6 == "" ? "" : " (" $6 ")", $5 }' "$rows"
}

options=()
case ${1:-} in
'')           ;;
--short)      options=(--short) ;;
--plot)       ;;
load)         ;;
-h | --help)  usage ; exit ;;
*)
    echo "bench.sh: unknown option \"$1\"" >&2
    usage >&2
    exit 2
    ;;
esac

tools/install-packages.sh build bench
if [ "${1:-}" = load ]; then
    case ${2:-} in
    '')       seconds=60 ;;
    --short)  seconds=5 ;;
    *)        echo "bench.sh: unknown option \"$2\"" >&2 ; exit 2 ;;
    esac
    tools/install-packages.sh load
    build_programs ON --target viewlibd bench_load
    exec bench/load.sh "$build" "$seconds"
fi
build_programs OFF
if [ "${1:-}" = --plot ]; then
    "$build/bin/bench_growth" --plot docs/performance.svg
    exit
fi

begin=$SECONDS
: >"$rows"
for name in documents posts heap idle; do
    measure "$name"
done
echo
echo "size"
bench/size.sh "$build" "$rows" || status=1
echo
table
echo
echo "measured in $((SECONDS - begin)) s on $(nproc) processors, load $(cut -d ' ' -f 1-3 /proc/loadavg)"
exit "$status"

#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Shows at full size what docs/robustness.md promises. One line for each promise: what was tried, what failed.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

usage() {
    cat <<'TEXT'
Usage: ./torture.sh [PART]

  (none)   everything (hours)
  faults   every allocation and call fails in turn, plainly and with the address sanitizer
  hostile  servers that mean harm, with shortened time-outs and with the real ones
  fuzz     the fuzz targets
  soak     many posts and registrations, and what the process holds meanwhile

  RUNS=N   executions of each fuzz target but "records" (default 10000000)
  RECORDS=N  executions of the fuzz target "records" (default 100000)
  SOAK_POSTS=N, SOAK_CYCLES=N  posts and registrations of the soak (default 5000000 and 50000)

Logs and inputs that found a fault are kept below build-torture-logs. Exit status: 0 nothing failed, 1 something did.
TEXT
}

runs=${RUNS:-10000000}
records=${RECORDS:-100000}
jobs=$(nproc)
logs=$PWD/build-torture-logs
status=0
mkdir -p "$logs"

# The sanitizers' run-time needs the usual layout of the address space.
fixed_addresses() {
    if setarch "$(uname -m)" -R true 2>/dev/null; then
        setarch "$(uname -m)" -R "$@"
    else
        "$@"
    fi
}

# promise TEXT TRIED FAILED
promise() {
    echo "$1: $2 tried, $3 failed"
    [ "$3" = 0 ] || status=1
}

# build DIRECTORY CMAKE-ARGUMENT... -- TARGET...
build() {
    local directory=$1 options=()
    shift
    while [ "$1" != -- ]; do
        options+=("$1")
        shift
    done
    shift
    fixed_addresses cmake -S . -B "$directory" "${options[@]}" >"$logs/$directory.log" 2>&1 &&
        fixed_addresses cmake --build "$directory" -j "$jobs" --target "$@" >>"$logs/$directory.log" 2>&1 ||
        { tail -n 20 "$logs/$directory.log" >&2; echo "torture.sh: $directory cannot be built" >&2; exit 1; }
}

# gtest PROMISE PROGRAM [COUNT-PATTERN]: the program's own count where it prints one, else that of its tests.
gtest() {
    local log tried passed all
    log=$logs/$(basename "$2")-${1//[^a-z]/}.log
    fixed_addresses "$2" >"$log" 2>&1 || true
    all=$(sed -nE 's/^\[==========\] Running ([0-9]+) tests?.*/\1/p' "$log" | head -n 1)
    passed=$(grep -c '^\[       OK' "$log" || true)
    tried=$(sed -nE "s/${3:-^$}/\1/p" "$log" | tail -n 1)
    promise "$1" "${tried:-${all:-0} cases}" "$((${all:-1} - passed))"
}

faults() {
    local calls='.*, ([0-9]+ calls with something failing)'
    build build-torture -DCMAKE_BUILD_TYPE=Release -- torture_test
    PUBSEC_TORTURE_STEP=1 gtest "failing memory and calls" build-torture/bin/torture_test "$calls"
    build build-torture-asan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DPUBSEC_SANITIZE=address,undefined -- \
        torture_test hostile_test
    PUBSEC_TORTURE_STEP=1 gtest "the same under the sanitizers" build-torture-asan/bin/torture_test "$calls"
}

hostile() {
    build build-torture -DCMAKE_BUILD_TYPE=Release -- hostile_test hostile_slow_test fault_matrix_test
    gtest "faults met in the field" build-torture/bin/fault_matrix_test '^faults: .*, ([0-9]+ cases)'
    gtest "hostile servers" build-torture/bin/hostile_test
    build build-torture-asan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DPUBSEC_SANITIZE=address,undefined -- \
        torture_test hostile_test
    gtest "hostile servers under the sanitizers" build-torture-asan/bin/hostile_test
    gtest "stalling servers in real time" build-torture/bin/hostile_slow_test
}

# one_target NAME RUNS
one_target() {
    local log=$logs/fuzz-$1.log found=$logs/fuzz-$1 failed=0 tried
    mkdir -p "$found"
    nice -n 19 setarch "$(uname -m)" -R build-torture-fuzz/bin/"fuzz_$1" -runs="$2" -timeout=20 -rss_limit_mb=2048 \
        -dict=fuzz/json.dict -artifact_prefix="$logs/fuzz-$1-" "$found" "fuzz/corpus/$1" >"$log" 2>&1 || failed=1
    tried=$(sed -nE 's/^#([0-9]+).*/\1/p' "$log" | tail -n 1)
    promise "fuzzing \"$1\"" "${tried:-0} inputs" "$failed"
}

fuzz() {
    local targets=(status keepalive time transfer location address viewlib) target
    CC=clang CXX=clang++ build build-torture-fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo -DPUBSEC_BUILD_FUZZ=ON \
        -DPUBSEC_BUILD_TESTS=OFF -DPUBSEC_BUILD_EXAMPLES=OFF \
        -DPUBSEC_SANITIZE=fuzzer-no-link,address,undefined -- "${targets[@]/#/fuzz_}" fuzz_records
    for target in "${targets[@]}"; do
        one_target "$target" "$runs"
    done
    one_target records "$records"
}

soak() {
    local log=$logs/soak.log failed=0
    export SOAK_POSTS=${SOAK_POSTS:-5000000} SOAK_CYCLES=${SOAK_CYCLES:-50000}
    build build-torture -DCMAKE_BUILD_TYPE=Release -- soak_test
    build-torture/bin/soak_test >"$log" 2>&1 || failed=1
    sed -nE '/^ +after +('"$((SOAK_POSTS / 20))|$SOAK_POSTS|$((SOAK_CYCLES / 20))|$SOAK_CYCLES"'):/p' "$log"
    promise "memory, descriptors and threads stay flat" "$SOAK_POSTS posts and $SOAK_CYCLES registrations" "$failed"
}

case ${1:-} in
'')          faults ; hostile ; fuzz ; soak ;;
soak)        soak ;;
faults)      faults ;;
hostile)     hostile ;;
fuzz)        fuzz ;;
-h | --help) usage ; exit ;;
*)
    echo "torture.sh: unknown part \"$1\"" >&2
    usage >&2
    exit 2
    ;;
esac
exit "$status"

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
  races    everything at once, with the thread sanitizer; all orders of a few threads
  fuzz     the fuzz targets, one for each processor at a time
  soak     many posts and registrations, and what the process holds meanwhile

  STORM_SECONDS=N  how long the storm of the races lasts (default 300)
  SHAKES=N   seeds of the shaken storms (default 1000)
  RUNS=N     executions of each fuzz target but "records" (default 10000000)
  RECORDS=N  executions of the fuzz target "records" (default 100000)
  SOAK_POSTS=N, SOAK_CYCLES=N  posts and registrations of the soak (default 5000000 and 50000)

Each line says what was tried and how much of it failed: what did not come to its end, or ended in a report of a
sanitizer, has failed. Logs and inputs that found a fault are kept below build-torture-logs. Exit status: 0 nothing
failed, 1 something did, 2 wrong arguments.
TEXT
}

storm_seconds=${STORM_SECONDS:-300}
shakes=${SHAKES:-1000}
runs=${RUNS:-10000000}
records=${RECORDS:-100000}
jobs=$(nproc)
patience=12h # for a program that hangs
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

# promise TEXT TRIED FAILED LOG
promise() {
    echo "$1: $2 tried, $3 failed"
    [ "$3" = 0 ] || { status=1; echo "torture.sh: see $4" >&2; }
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

# gtest PROMISE PROGRAM [UNIT [COUNT-PATTERN]]: the program's own count where it prints one, else that of the tests that
# it began. Test results may stand behind answers that were left to libcurl.
gtest() {
    local log all begun passed tried failed result=0
    log=$logs/$(basename "$2")-${1//[^a-z]/}.log
    fixed_addresses timeout --foreground "$patience" "$2" >"$log" 2>&1 || result=$?
    all=$(sed -nE 's/^\[==========\] Running ([0-9]+) tests?.*/\1/p' "$log" | head -n 1)
    begun=$(grep -c '\[ RUN      \] ' "$log" || true)
    passed=$(grep -c '\[       OK \] ' "$log" || true)
    failed=$((${all:-0} - passed))
    if [ "$failed" = 0 ] && { [ "$result" != 0 ] || [ "$passed" = 0 ]; }; then
        failed=1
    fi
    tried=$(sed -nE "s/${4:-^()$}/\1/p" "$log" | tail -n 1)
    promise "$1" "${tried:-$begun ${3:-cases}}" "$failed" "$log"
}

faults() {
    local calls='.*, ([0-9]+ calls with something failing)'
    build build-torture -DCMAKE_BUILD_TYPE=Release -- torture_test
    PUBSEC_TORTURE_STEP=1 gtest "failing memory and calls" build-torture/bin/torture_test operations "$calls"
    build build-torture-asan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DPUBSEC_SANITIZE=address,undefined -- torture_test
    PUBSEC_TORTURE_STEP=1 gtest "the same under the sanitizers" build-torture-asan/bin/torture_test operations "$calls"
}

hostile() {
    build build-torture -DCMAKE_BUILD_TYPE=Release -- hostile_test hostile_slow_test fault_matrix_test
    gtest "faults met in the field" build-torture/bin/fault_matrix_test faults '^faults: .*, ([0-9]+ cases)'
    gtest "hostile servers" build-torture/bin/hostile_test
    build build-torture-asan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DPUBSEC_SANITIZE=address,undefined -- hostile_test
    gtest "hostile servers under the sanitizers" build-torture-asan/bin/hostile_test
    gtest "stalling servers in real time" build-torture/bin/hostile_slow_test
}

races() {
    build build-torture -DCMAKE_BUILD_TYPE=Release -- session_orders_test
    PUBSEC_ORDERS=1 gtest "orders of a few threads" build-torture/bin/session_orders_test '' '^([0-9]+ orders) in all$'
    build build-torture-tsan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DPUBSEC_SANITIZE=thread -- \
        session_stress_test session_interleaving_test session_shaken_test
    PUBSEC_STORM_SECONDS=$storm_seconds gtest "a storm under the thread sanitizer" \
        build-torture-tsan/bin/session_stress_test storms '^storm: ([0-9]+ seconds, [0-9]+ posts)$'
    gtest "interleavings under the thread sanitizer" build-torture-tsan/bin/session_interleaving_test
    PUBSEC_SHAKES=$shakes gtest "races under the thread sanitizer" build-torture-tsan/bin/session_shaken_test seeds
}

# one_target NAME RUNS
one_target() {
    local log=$logs/fuzz-$1.log found=$logs/fuzz-$1 failed=0 tried
    mkdir -p "$found"
    fixed_addresses nice -n 19 build-torture-fuzz/bin/"fuzz_$1" -runs="$2" -timeout=20 -rss_limit_mb=2048 \
        -dict=fuzz/json.dict -artifact_prefix="$logs/fuzz-$1-" "$found" "fuzz/corpus/$1" >"$log" 2>&1 || failed=1
    tried=$(sed -nE 's/^#([0-9]+).*/\1/p' "$log" | tail -n 1)
    [ "${tried:-0}" -ge "$2" ] || failed=1
    promise "fuzzing \"$1\"" "${tried:-0} inputs" "$failed" "$log"
}

# Every target that has a corpus, as many at a time as there are processors.
fuzz() {
    local targets=(fuzz/corpus/*) target count pids=() pid
    targets=("${targets[@]##*/}")
    CC=clang CXX=clang++ build build-torture-fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo -DPUBSEC_BUILD_FUZZ=ON \
        -DPUBSEC_BUILD_TESTS=OFF -DPUBSEC_BUILD_EXAMPLES=OFF \
        -DPUBSEC_SANITIZE=fuzzer-no-link,address,undefined -- "${targets[@]/#/fuzz_}"
    for target in "${targets[@]}"; do
        while [ "$(jobs -rp | wc -l)" -ge "$jobs" ]; do
            sleep 1
        done
        count=$runs
        [ "$target" != records ] || count=$records
        { one_target "$target" "$count"; exit "$status"; } &
        pids+=($!)
    done
    for pid in "${pids[@]}"; do
        wait "$pid" || status=1
    done
}

# flat TEST UNIT: how much was done, and what was held after the first part of it and after the last.
flat() {
    local log=$logs/soak.log samples tried failed=0
    samples=$(sed -n "/RUN .*Soak\.$1\$/,/\(OK\|FAILED\) .*Soak\.$1 /p" "$log" | grep '^ *after ' || true)
    tried=$(sed -nE '$s/^ *after *([0-9]+):.*/\1/p' <<<"$samples")
    grep -q "\[       OK \] Soak\.$1 " "$log" || failed=1
    promise "memory, descriptors and threads stay flat" "${tried:-0} $2" "$failed" "$log"
    sed -n '/./{1p;1!{$p}}' <<<"$samples"
}

soak() {
    build build-torture -DCMAKE_BUILD_TYPE=Release -- soak_test
    SOAK_POSTS=${SOAK_POSTS:-5000000} SOAK_CYCLES=${SOAK_CYCLES:-50000} \
        timeout --foreground "$patience" build-torture/bin/soak_test >"$logs/soak.log" 2>&1 ||
        { status=1; echo "torture.sh: soak_test failed" >&2; }
    flat PostsLeaveNothingBehind posts
    flat RegistrationsLeaveNothingBehind registrations
}

# Read whole before it begins, as the file may change within hours.
main() {
    case ${1:-} in
    '')          faults ; hostile ; races ; fuzz ; soak ;;
    faults)      faults ;;
    hostile)     hostile ;;
    races)       races ;;
    fuzz)        fuzz ;;
    soak)        soak ;;
    -h | --help) usage ; exit ;;
    *)
        echo "torture.sh: unknown part \"$1\"" >&2
        usage >&2
        exit 2
        ;;
    esac
    exit "$status"
}

main "$@"

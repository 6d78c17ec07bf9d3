#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Builds everything and runs the tests. The last line counts them: "N passed, N failed".
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

usage() {
    cat <<'TEXT'
Usage: ./test.sh [SUITE]

  (none)   optimised build with gcc, every test that is not labelled "slow"
  asan     the same with the address and undefined-behaviour sanitizers
  tsan     the same with the thread sanitizer
  clang    the same built with clang
  slow     the tests labelled "slow"
  coverage what the tests run of the library, and whether tests/coverage/uncovered.txt has all that they leave out;
           "coverage --write" brings the list up to date
  page     the page of viewlibd, in a browser; "page --screenshots" makes the pictures of it in docs/images
  all      all of these
  format   clang-format finds nothing to change
  tidy     clang-tidy finds nothing (in FOLDER..., when given)

Missing Debian packages are installed first. Exit status: 0 all passed, 1 something failed, 2 wrong arguments.
TEXT
}

jobs=$(nproc)
passed=0
failed=0

# The sanitizers' run-time needs the usual layout of the address space, which some kernels make too random for it.
fixed_addresses() {
    if setarch "$(uname -m)" -R true 2>/dev/null; then
        setarch "$(uname -m)" -R "$@"
    else
        "$@"
    fi
}

# run_tests DIRECTORY CTEST-ARGUMENT...: counts what ran into passed and failed.
run_tests() {
    local directory=$1 log total broken
    shift
    log=$directory/ctest.log
    fixed_addresses ctest --test-dir "$directory" --output-on-failure --no-tests=error -j "$jobs" "$@" 2>&1 |
        tee "$log" | sed -u -E '/^ *Start +[0-9]+: |  Passed +[0-9.]+ sec *$/d' || true
    read -r broken total < <(sed -nE 's/^[0-9]+% tests passed, ([0-9]+) tests? failed out of ([0-9]+)$/\1 \2/p' "$log") ||
        { broken=1 total=1; echo "test.sh: no tests ran in $directory" >&2; }
    passed=$((passed + total - broken))
    failed=$((failed + broken))
}

# suite NAME [CTEST-ARGUMENT...]: the tests of a build of its own. "release" is the build of ./demo.sh too.
suite() {
    local name=$1 directory=build-$1
    shift
    [ "$name" = release ] && directory=build
    fixed_addresses cmake --preset "$name" -B "$directory"
    fixed_addresses cmake --build "$directory" -j "$jobs"
    run_tests "$directory" "$@"
}

sources() {
    find . -path './build*' -prune -o -path './.git' -prune -o -type f \( "${@}" \) -print | LC_ALL=C sort
}

format() {
    tools/install-packages.sh check
    sources -name '*.c' -o -name '*.cpp' -o -name '*.h' | xargs clang-format --dry-run --Werror
    echo "format: nothing to change"
}

# A clang build names the files and how they are compiled.
tidy() {
    local filter='.*'
    [ $# -gt 0 ] && filter="^$PWD/($(IFS='|'; echo "$*"))/"
    tools/install-packages.sh build test check
    cmake --preset clang >/dev/null
    run-clang-tidy -quiet -p build-clang -j "$jobs" "$filter" 2>&1 | sed -E '/warnings? generated\.$/d'
    echo "tidy: nothing found"
}

# coverage [--write]: only tests that go by a clock of their own, so that the figures are the same each time.
coverage() {
    local directory=build-coverage report=build-coverage/coverage.json
    fixed_addresses cmake --preset coverage
    fixed_addresses cmake --build "$directory" -j "$jobs" --target tests
    find "$directory" -name '*.gcda' -delete # counts of former runs, and of listing the tests
    run_tests "$directory" -LE 'slow|real-time|field'
    gcovr --root . --filter '(core|session|objects|post|util)/' --exclude-throw-branches \
        --exclude-unreachable-branches --json "$report" "$directory"
    python3 -m doctest tests/coverage/uncovered.py &&
        python3 tests/coverage/uncovered.py "$report" tests/coverage/uncovered.txt "$@" || failed=$((failed + 1))
}

# page [--screenshots]: counts what the browser tried into passed and failed.
page() {
    local script=page_test.mjs log=build/page.log good bad
    [ "${1:-}" = --screenshots ] && script=screenshots.mjs
    fixed_addresses cmake --preset release -B build
    fixed_addresses cmake --build build -j "$jobs" --target viewlibd pubsec-device
    npm ci --prefix tests/page --no-audit --no-fund --loglevel=error
    node "tests/page/$script" 2>&1 | tee "$log" || true
    read -r good bad < <(sed -nE 's/^([0-9]+) passed, ([0-9]+) failed$/\1 \2/p' "$log") || { good=0 bad=1; }
    passed=$((passed + good))
    failed=$((failed + bad))
}

fast=(-LE slow)
case ${1:-} in
'')           tools/install-packages.sh build test ; suite release "${fast[@]}" ;;
asan | tsan)  tools/install-packages.sh build test ; suite "$1" "${fast[@]}" ;;
clang)        tools/install-packages.sh build test check ; suite clang "${fast[@]}" ;;
slow)         tools/install-packages.sh build test ; suite release -L slow ;;
coverage)     shift ; tools/install-packages.sh build test coverage ; coverage "$@" ;;
page)         tools/install-packages.sh build page ; page "${2:-}" ;;
all)
    tools/install-packages.sh build test check
    suite release
    for name in asan tsan clang; do
        suite "$name" "${fast[@]}"
    done
    ;;
format)       format ; exit ;;
tidy)         shift ; tidy "$@" ; exit ;;
-h | --help)  usage ; exit ;;
*)
    echo "test.sh: unknown suite \"$1\"" >&2
    usage >&2
    exit 2
    ;;
esac

echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]

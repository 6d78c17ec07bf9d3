#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# The whole way of a report on this machine: a device registers at a view library on loopback, is kept alive, takes its
# time, reports a picture with the face in it and then one of everything else, and leaves; then the server is asked what
# it has. Missing Debian packages
# are installed first. Nothing is left running or lying about but the build in build/.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

picture=samples/portrait.jpg
clock_offset=3600 # the server's clock is ahead, so that a machine's clock that were set would show
server=
work=

fail() {
    echo "demo: $*" >&2
    exit 1
}

clean_up() {
    if [ -n "$server" ]; then
        kill "$server" 2>/dev/null || true
        wait "$server" 2>/dev/null || true
    fi
    [ -z "$work" ] || rm -rf "$work"
}
trap clean_up EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

build() {
    local log=build/demo.log begin=$SECONDS
    mkdir -p build
    echo "building, output in $log"
    if ! { cmake --preset release -B build && cmake --build build -j "$(nproc)" --target viewlibd pubsec-device; } \
        >"$log" 2>&1; then
        tail -n 30 "$log" >&2
        fail "the build failed, see $log"
    fi
    echo "built in $((SECONDS - begin)) s"
}

start_server() {
    build/bin/viewlibd --port 0 --port-file "$work/port" --data "$work/data" --clock-offset "$clock_offset" --verbose \
        >"$work/server.log" 2>&1 &
    server=$!
    for _ in $(seq 100); do
        [ ! -s "$work/port" ] || return 0
        kill -0 "$server" 2>/dev/null || break
        sleep 0.1
    done
    cat "$work/server.log" >&2
    fail "the server did not start"
}

stop_server() {
    local pid=$server
    kill "$pid"
    server=
    wait "$pid" || fail "the server did not end well"
}

# Seconds that the machine's clock is ahead of the time since it was started.
clock_lead() {
    local up
    read -r up _ </proc/uptime
    echo $(($(date +%s) - ${up%.*}))
}

ask() {
    sqlite3 -readonly "$@"
}

# held PATH NUMBER: bytes and objects of the NUMBERth document (from 0) that the server keeps from a path.
held() {
    ask -separator $'\t' "$database" "SELECT length(body), coalesce((SELECT group_concat(n || ' ' || kind, ', ')
            FROM (SELECT kind, count(*) AS n FROM objects WHERE post = p.id GROUP BY kind ORDER BY min(id))), '-')
        FROM posts p WHERE path LIKE '${1//<id>/%}' ORDER BY id LIMIT 1 OFFSET $2"
}

# uploaded NUMBER: bytes of the NUMBERth upload (from 1), and what the server has of the file in the end.
uploaded() {
    local bytes
    bytes=$(sed -nE 's/.* POST \/VIID\/Upload\/[^ ]* ([0-9]+) bytes .*/\1/p' "$work/server.log" | sed -n "${1}p")
    printf '%s\t' "$bytes"
    echo "1 file, $(stat -c %s "$work/data/uploads/video.ps") bytes in the end"
}

print_outcome() {
    local operation request result path bytes objects
    declare -A seen=()
    echo
    echo "what became of it"
    printf '  %-12s %-36s %7s  %-4s %s\n' operation request bytes code "held by the server"
    while IFS=$'\t' read -r operation request result; do
        path=${request#* }
        bytes=- objects=-
        case $request in
        *System* | GET*) ;;
        *Upload*)
            seen[$path]=$((${seen[$path]:-0} + 1))
            IFS=$'\t' read -r bytes objects < <(uploaded "${seen[$path]}")
            ;;
        *)
            IFS=$'\t' read -r bytes objects < <(held "$path" "${seen[$path]:-0}") ||
                fail "the server has nothing of \"$operation\""
            seen[$path]=$((${seen[$path]:-0} + 1))
            ;;
        esac
        case $result in [0-9]*) result=${result%%[ :]*} ;; *) result=- ;; esac
        printf '  %-12s %-36s %7s  %-4s %s\n' "$operation" "$request" "$bytes" "$result" "$objects"
    done <"$work/rows"
}

expect() {
    local what=$1 wanted=$2 found=$3
    [ "$found" = "$wanted" ] || fail "$what: expected \"$wanted\", found \"$found\""
    printf '  ok  %s\n' "$what"
}

check_stored() {
    local file
    echo
    echo "checks"
    expect "one image and its face are stored first" "Face 48,Image 41" \
        "$(ask "$database" "SELECT group_concat(k) FROM
            (SELECT kind || ' ' || length(object) AS k FROM objects WHERE post <= 2 ORDER BY 1)")"
    expect "the face names the image as its source" 1 \
        "$(ask "$database" "SELECT count(*) FROM objects i JOIN objects f ON i.kind = 'Image' AND f.kind = 'Face'
            AND i.post = 1 AND f.post = 2 AND json_extract(f.document, '\$.SourceID') = i.object")"
    expect "the face box arrived" "153,14,301,188" \
        "$(ask -separator , "$database" "SELECT json_extract(document, '\$.LeftTopX'), json_extract(document, '\$.LeftTopY'),
            json_extract(document, '\$.RightBtmX'), json_extract(document, '\$.RightBtmY') FROM objects
            WHERE kind = 'Face' AND post = 2")"
    expect "twenty-one documents and blocks of data are stored" 21 "$(ask "$database" "SELECT count(*) FROM posts")"
    expect "the picture came eight times" 8 "$(ask "$database" "SELECT count(*) FROM pictures WHERE file LIKE '%.jpg'")"
    while read -r file; do
        cmp "$picture" "$work/data/$file" || fail "$file is not the picture that was sent"
        printf '  ok  %s equals %s byte for byte\n' "$file" "$picture"
    done < <(ask "$database" "SELECT file FROM pictures WHERE file LIKE '%.jpg' ORDER BY id")
    expect "the upload in two parts has the digest that was announced" \
        "$(ask "$database" "SELECT json_extract(document, '\$.FileHash') FROM objects WHERE kind = 'File'")" \
        "$(md5sum <"$work/data/uploads/video.ps" | cut -d ' ' -f 1)"
    expect "no device is registered any more" 0 "$(ask "$database" "SELECT count(*) FROM registrations")"
    local moved=$(($(clock_lead) - lead))
    [ "${moved#-}" -lt 60 ] || fail "the machine's clock moved by $moved s"
    echo "  ok  the machine's clock was left alone"
}

tools/install-packages.sh build test
build
begin=$SECONDS
work=$(mktemp -d)
database=$work/data/viewlib.db
lead=$(clock_lead)
start_server
echo
timeout 50 build/bin/pubsec-device --port "$(cat "$work/port")" --picture "$picture" --tour --rows "$work/rows" ||
    { cat "$work/server.log" >&2; fail "the device failed; above is the server's log"; }
print_outcome
check_stored
stop_server
echo
echo "demo: all went well, $((SECONDS - begin)) s after the build"

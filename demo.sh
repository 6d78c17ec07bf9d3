#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# The whole way of a report on this machine: a device registers at a view library on loopback, is kept alive, takes its
# time, reports a picture with the face in it and leaves; then the server is asked what it has. Missing Debian packages
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

print_received() {
    echo
    echo "what the server received"
    printf '  %-3s %-30s %7s  %s\n' "#" request bytes answer
    # time #number peer device method target size "bytes ->" status
    awk '$2 ~ /^#[0-9]+$/ { printf "  %-3s %-30s %7s  %s\n", substr($2, 2), $5 " " $6, $7, $10 }' "$work/server.log"
}

print_stored() {
    echo
    echo "what the server stored"
    printf '  %-6s %-48s %s\n' object identifier "file, as sent"
    ask -separator ' ' "$database" "SELECT printf('  %-6s %-48s %s, %s', o.kind, o.object, p.file, p.format)
        FROM objects o JOIN pictures p ON p.object = o.id ORDER BY o.id"
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
    expect "one image and its face are stored" "Face 48,Image 41" \
        "$(ask "$database" "SELECT group_concat(k) FROM (SELECT kind || ' ' || length(object) AS k FROM objects ORDER BY 1)")"
    expect "the face names the image as its source" 1 \
        "$(ask "$database" "SELECT count(*) FROM objects i JOIN objects f ON i.kind = 'Image' AND f.kind = 'Face'
            AND json_extract(f.document, '\$.SourceID') = i.object")"
    expect "the face box arrived" "153,14,301,188" \
        "$(ask -separator , "$database" "SELECT json_extract(document, '\$.LeftTopX'), json_extract(document, '\$.LeftTopY'),
            json_extract(document, '\$.RightBtmX'), json_extract(document, '\$.RightBtmY') FROM objects WHERE kind = 'Face'")"
    expect "two pictures are stored" 2 "$(ask "$database" "SELECT count(*) FROM pictures")"
    while read -r file; do
        cmp "$picture" "$work/data/$file" || fail "$file is not the picture that was sent"
        printf '  ok  %s equals %s byte for byte\n' "$file" "$picture"
    done < <(ask "$database" "SELECT file FROM pictures ORDER BY id")
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
timeout 50 build/bin/pubsec-device --port "$(cat "$work/port")" --picture "$picture" ||
    { cat "$work/server.log" >&2; fail "the device failed; above is the server's log"; }
print_received
print_stored
check_stored
stop_server
echo
echo "demo: all went well, $((SECONDS - begin)) s after the build"

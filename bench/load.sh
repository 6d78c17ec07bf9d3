#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# load.sh BUILD SECONDS: 200 devices post faces with pictures of 100 KB from 16 connections, to viewlibd, and then, for
# a third of that time, the same requests to nginx, which reads them and answers an empty 200.
set -euo pipefail
build=$1
seconds=$2

work=$(mktemp -d "${TMPDIR:-/tmp}/viewlib-load-XXXXXX")
servers=()

clean_up() {
    for pid in "${servers[@]}"; do
        kill "$pid" 2>/dev/null || true
        wait "$pid" 2>/dev/null || true
    done
    rm -rf "$work"
}
trap clean_up EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

# until_up PID COMMAND...: waits until the command succeeds; fails when the process has gone.
until_up() {
    local pid=$1
    shift
    for _ in $(seq 200); do
        if "$@"; then return 0; fi
        kill -0 "$pid" 2>/dev/null || break
        sleep 0.1
    done
    return 1
}

connects() {
    (: <"/dev/tcp/127.0.0.1/$1") 2>/dev/null
}

start_viewlibd() {
    "$build/bin/viewlibd" --listen 127.0.0.1 --port 0 --port-file "$work/port" --data "$work/data" >"$work/viewlibd.log" 2>&1 &
    servers+=($!)
    viewlibd=$!
    until_up "$viewlibd" test -s "$work/port" || { cat "$work/viewlibd.log" >&2; exit 3; }
}

start_nginx() {
    local program
    program=$(PATH=$PATH:/usr/sbin command -v nginx) || { echo "load.sh: nginx is not installed" >&2; exit 3; }
    nginx_port=$("$build/bin/bench_load" --free-port)
    mkdir "$work/nginx"
    cat >"$work/nginx/conf" <<CONF
daemon off;
worker_processes auto;
pid $work/nginx/pid;
error_log $work/nginx/error.log;
events { worker_connections 64; }
http {
    access_log off;
    client_max_body_size 100m;
    client_body_temp_path $work/nginx/body;
    proxy_temp_path $work/nginx/proxy;
    fastcgi_temp_path $work/nginx/fastcgi;
    uwsgi_temp_path $work/nginx/uwsgi;
    scgi_temp_path $work/nginx/scgi;
    keepalive_requests 100000000;
    server {
        listen 127.0.0.1:$nginx_port;
        location / { return 200; }
    }
}
CONF
    "$program" -c "$work/nginx/conf" -p "$work/nginx" -e "$work/nginx/error.log" &
    servers+=($!)
    until_up $! connects "$nginx_port" || { cat "$work/nginx/error.log" >&2; exit 3; }
}

status=0
start_viewlibd
"$build/bin/bench_load" --name viewlibd --port "$(cat "$work/port")" --seconds "$seconds" --picture samples/portrait.jpg \
    --user admin:viewlib --data "$work/data" --pid "$viewlibd" >"$work/out" || status=1
start_nginx
"$build/bin/bench_load" --name nginx --port "$nginx_port" --seconds $((seconds / 3 > 3 ? seconds / 3 : 3)) \
    --picture samples/portrait.jpg >>"$work/out" || status=1
grep -v '^rate' "$work/out"
awk -F '\t' '$1 == "rate" { rate[$2] = $3 } END { printf "  %-10s %.3f of the posts a second that nginx takes and forgets\n", "ratio", rate["viewlibd"] / rate["nginx"] }' "$work/out"
echo "  on $(nproc) processors, load $(cut -d ' ' -f 1-3 /proc/loadavg), $(du -sm "$work/data" | cut -f 1) MB written"
exit "$status"

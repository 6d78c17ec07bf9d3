#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# The Debian packages that this tree needs, in one place. Installs those that are missing, as root or through sudo.
#
#     tools/install-packages.sh GROUP...
#
#     build    compile everything, run the demonstration
#     test     run the test suite (with build)
#     bench    measure (with build)
#     load     load the view library (with build and bench)
#     coverage see what the tests run of the library (with build and test)
#     page     try the page of viewlibd in a browser (with build)
#     check    clang, clang-format, clang-tidy
set -euo pipefail

packages_of() {
    case $1 in
    build)
        echo g++ make cmake pkg-config
        echo libcurl4-openssl-dev libcjson-dev            # the library
        echo libmicrohttpd-dev libsqlite3-dev libssl-dev  # the development view library
        echo libtomlplusplus-dev                          # its configuration file
        echo sqlite3                                      # demo.sh looks into the server's data with it
        ;;
    test)
        echo libgtest-dev libgmock-dev
        echo apache2-bin                                  # a judge of digests
        echo curl python3-requests                        # clients of others, for the view library
        echo mandoc                                       # the form of the man page
        ;;
    bench)
        echo libbenchmark-dev rapidjson-dev nlohmann-json3-dev
        echo g++-arm-linux-gnueabihf                      # the size of the library on a device
        ;;
    load)
        echo nginx-light                                  # the same load, for comparison
        ;;
    coverage)
        echo gcovr python3
        ;;
    page)
        echo chromium fonts-liberation fonts-wqy-microhei
        command -v node >/dev/null && command -v npm >/dev/null || echo nodejs npm
        ;;
    check)
        echo clang clang-format clang-tidy
        ;;
    *)
        echo "install-packages: unknown group \"$1\": expected build, test, bench, load, coverage, page or check" >&2
        return 2
        ;;
    esac
}

is_installed() {
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        echo "install-packages: not root, and there is no sudo; install: ${missing[*]}" >&2
        exit 1
    fi
}

[ $# -gt 0 ] || { echo "usage: tools/install-packages.sh build|test|bench|load|coverage|page|check..." >&2; exit 2; }
if ! command -v dpkg-query >/dev/null; then
    echo "install-packages: this is no Debian; going on with what is installed" >&2
    exit 0
fi

wanted=()
for group in "$@"; do
    names=$(packages_of "$group") || exit $?
    mapfile -t -O "${#wanted[@]}" wanted < <(tr ' ' '\n' <<<"$names")
done
missing=()
for package in "${wanted[@]}"; do
    is_installed "$package" || missing+=("$package")
done
if [ ${#missing[@]} -gt 0 ]; then
    echo "installing: ${missing[*]}"
    as_root env DEBIAN_FRONTEND=noninteractive apt-get update -qq
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

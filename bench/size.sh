#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Size of the stripped shared library on this machine and for armhf, and of its object files.
#
#     bench/size.sh BUILD [ROWS]
#
# BUILD is a Release build directory; the armhf build is made in BUILD/armhf. ROWS gets the table's rows.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

build=$1
rows=${2:-/dev/null}
status=0
triplet=arm-linux-gnueabihf

# report WHAT BYTES KIBIBYTES: a row of the table. A size has no noise: above the limit is far off.
report() {
    local verdict=met
    [ "$2" -le $(($3 * 1024)) ] || { verdict="FAR OFF"; status=1; }
    printf '  %-46s %14s  %-8s %s\n' "$1" "$2 bytes" "<= $3 KiB" "$verdict"
    printf '%s\t\t<= %s KiB\t%s bytes\t%s\t\n' "$1" "$3" "$2" "$verdict" >>"$rows"
}

# stripped STRIP LIBRARY: bytes of the file that is installed on a device.
stripped() {
    "$1" -o "$build/stripped.so" "$2"
    stat -L -c %s "$build/stripped.so"
    rm "$build/stripped.so"
}

build_armhf() {
    local staged=$PWD/$build/armhf-staged name include
    mkdir -p "$staged/include" "$staged/lib"
    for name in curl cjson; do
        include=$(find /usr/include -maxdepth 2 -type d -name "$name" | head -n 1)
        ln -sfn "$include" "$staged/include/$name"
        "$triplet-gcc" -shared -o "$staged/lib/lib$name.so" -x c /dev/null
    done
    cmake -S . -B "$build/armhf" --toolchain bench/armhf.cmake -DCMAKE_BUILD_TYPE=Release \
        -DPUBSEC_SIZE_HEADERS="$staged/include" -DPUBSEC_SIZE_LIBRARIES="$staged/lib" -DPUBSEC_INSTALL=OFF \
        -DPUBSEC_BUILD_VIEWLIB=OFF -DPUBSEC_BUILD_EXAMPLES=OFF -DPUBSEC_BUILD_TESTS=OFF >"$build/armhf.log" 2>&1
    cmake --build "$build/armhf" -j "$(nproc)" --target pubsecstack >>"$build/armhf.log" 2>&1
}

report "shared library, stripped, $(uname -m)" "$(stripped strip "$build/lib/libpubsecstack.so")" 160
if command -v "$triplet-g++" >/dev/null; then
    build_armhf
    report "shared library, stripped, armhf" "$(stripped "$triplet-strip" "$build/armhf/lib/libpubsecstack.so")" 128
else
    echo "  armhf is left out: no $triplet-g++"
fi

echo
echo "  object files of $build, bytes of code and constants"
find "$build/CMakeFiles/pubsecstack_objects.dir" -name '*.o' -exec size {} + |
    awk 'NR > 1 && $6 ~ /\.o$/ { name = $6; sub(/.*pubsecstack_objects\.dir\//, "", name); sub(/\.o$/, "", name)
                 printf "  %7d  %s\n", $1 + $2, name; all += $1 + $2 }
         END { printf "  %7d  in all\n", all }' | sort -k1,1nr
exit "$status"

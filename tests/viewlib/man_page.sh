#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# man_page.sh VIEWLIBD PAGE: the man page has an entry for every option of --help, none that is not there, the same
# defaults, and nothing that a formatter complains about.
set -euo pipefail
program=$1
page=$2
status=0

complain() {
    echo "$page: $*"
    status=1
}

# Entries of the page: the line after ".TP" that names an option.
entries=$(sed -n '/^\.TP$/{n;p;}' "$page" | tr -d '\\' | grep -oE -- '--[a-z-]+' | LC_ALL=C sort)
options=$("$program" --help | sed -nE 's/^  (--[a-z-]+).*/\1/p' | LC_ALL=C sort)
[ -n "$options" ] || complain "--help names no options"
[ "$entries" = "$options" ] ||
    complain "its entries are not the options of --help:"$'\n'"$(diff <(echo "$options") <(echo "$entries") || true)"

# What --allow takes, and the number that --help has as a default.
text=$(tr -d '\\' <"$page")
while read -r what; do
    grep -qE "^\.(B|BR) $what( |\$)" <<<"$text" || complain "--allow $what is missing"
done < <("$program" --help | sed -n '/^WHAT of --allow/,/^$/s/^  \([a-z-]*\) .*/\1/p')
while read -r option number; do
    sed -n "/ $option /,/^\.TP/p" <<<"$text" | grep -qE "^Default $number(\.|,)" ||
        complain "$option: the default is not $number"
done < <("$program" --help | sed -nE 's/^  (--[a-z-]+) .*\(([0-9]+)\)$/\1 \2/p')

if command -v mandoc >/dev/null; then
    complaints=$(mandoc -Tlint -Wwarning "$page" || true)
elif command -v groff >/dev/null; then
    complaints=$(groff -man -Tascii -ww -z "$page" 2>&1)
else
    echo "neither mandoc nor groff is installed: the form is not checked"
    complaints=
fi
[ -z "$complaints" ] || complain "$complaints"
exit "$status"

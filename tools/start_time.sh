#!/usr/bin/env bash
# How long Quorvale.exe takes under Wine from its start until the home page is painted: the middle
# of several starts, in milliseconds, and all of them.
#
#   tools/start_time.sh [STARTS]     (9)
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/wine.sh
. tests/windows/computer.sh
programs=${QUORVALE_PROGRAMS:-build/$(windows_preset)}
window_probe=$programs/tests/windows/driver/window_probe.exe
starts=${1:-9}
work=$(mktemp -d)

finish() {
  [ -z "${WINEPREFIX-}" ] || wine_end
  virtual_display_end
  rm -rf "$work"
}
trap finish EXIT

virtual_display_start 1024x768x24
wine_use_prefix "$work/wine"
cp "$programs/src/app/Quorvale.exe" "$work/wine/drive_c/"
times=$(act time 'C:\Quorvale.exe' "$((starts + 1))")
used=${times##*used }
# The longest of them also read the program from the disk: it is left out.
times=$(tr ' ' '\n' <<< "${times% used*}" | head -n "$starts")
middle=$(sed -n "$(((starts + 1) / 2))p" <<< "$times")
echo "from start to home page: $middle ms, of which $used ms of the processor ($(tr '\n' ' ' <<< "$times"))"

#!/usr/bin/env bash
# Pictures of the Windows program's pages, taken under Wine on a display of their own.
#
#   tools/shots.sh [FOLDER]     (build/shots)
#
# Every page is reached as a person reaches it: by clicks and keys.
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/wine.sh
folder=${1:-build/shots}
mkdir -p "$folder"
program=build/$(windows_preset)/src/app/Quorvale.exe
work=$(mktemp -d)
started=

finish() {
  [ -n "$started" ] && wine_end
  virtual_display_end
  rm -rf "$work"
}
trap finish EXIT

virtual_display_start 1024x768x24
wine_use_prefix "$work/wine"
started=yes
"$(wine_command)" "$program" > "$work/log" 2>&1 &

# The window's place: it stands in the middle of the screen.
left=102
top=101
shot() {
  sleep "${2:-1}"
  import -silent -window root "$folder/$1.png"
  echo "$folder/$1.png"
}
click() { xdotool mousemove $((left + $1)) $((top + $2)) sleep 0.2 click 1 sleep 0.5; }

for _ in $(seq 100); do
  sleep 0.3
  xdotool search --name '^Quorvale$' > /dev/null 2>&1 && break
done
shot home 2
# Backup: the wizard's pages by its Next button, which Enter presses.
click 130 210
shot backup_job 3
xdotool key Return sleep 3
click 246 308 # the box of the documents and the desktop
for page in items options media review; do
  shot "backup_$page" 2
  xdotool key Return
done
shot backup_run 3
sleep 5
shot backup_done 1
xdotool key Return sleep 1
click 58 49
click 130 330
shot restore_file 2
click 58 49
click 440 250
shot settings 2
click 58 49
click 155 49
shot log 2
click 58 49
click 757 550
shot about 2

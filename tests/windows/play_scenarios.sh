#!/usr/bin/env bash
# Plays the scenarios against the real windows of Quorvale.exe under Wine, two at a time, and ends
# with one line: how many passed, how many failed.
#
#   tests/windows/play_scenarios.sh PROGRAMS LAY_MACHINE [SCENARIO...]
#
# PROGRAMS is the build folder of the Windows programs, LAY_MACHINE the host program that makes the
# starting machine. Without names all files of tests/scenarios are played. QUORVALE_PLAY_FOLDER
# takes the Wine prefixes and logs; those of failed scenarios stay there.
set -uo pipefail
cd "$(dirname "$0")/../.."
. tools/wine.sh

programs=$(realpath "${1:?the build folder of the Windows programs}")
lay_machine=$(realpath "${2:?the program that makes machines}")
shift 2
work=${QUORVALE_PLAY_FOLDER:-$PWD/build/play}
driver=$programs/tests/windows/driver/scenario_driver.exe
program=$programs/src/app/Quorvale.exe
limit=${QUORVALE_PLAY_SECONDS:-240}

# Scenarios that need a fact which only a simulated computer can be given; each with its reason.
exception() {
  case $1 in
    backup_no_space) echo "a full disk" ;;
    restore_no_space) echo "a full disk" ;;
    restore_share_silent) echo "a network share that falls silent" ;;
    vista_auto_refused) echo "refused raised rights: Wine grants them always" ;;
    vista_raised_rights_refused) echo "refused raised rights: Wine grants them always" ;;
    vista_restore_raised_rights) echo "refused raised rights: Wine grants them always" ;;
  esac
}

# A prefix of its own, made by linking the prepared one; the files of the user are the machine's.
make_prefix() { # PREFIX MACHINE
  local prefix=$1 machine=$2 folder name
  cp -al "$work/base" "$prefix"
  # What is written in place must not be shared.
  for name in system.reg user.reg userdef.reg; do
    cp --remove-destination "$work/base/$name" "$prefix/$name"
  done
  for folder in "$machine"/drive_c/*; do
    name=$(basename "$folder")
    # The system's own folder is there, in another spelling.
    case ${name,,} in
      windows) cp -a "$folder/." "$prefix/drive_c/windows/" ;;
      *) cp -a "$folder" "$prefix/drive_c/" ;;
    esac
  done
  rm -f "$prefix/dosdevices/d:"
  cp -a "$machine/drive_d" "$prefix/drive_d"
  ln -s ../drive_d "$prefix/dosdevices/d:"
  mkdir -p "$prefix/drive_c/Program Files/Quorvale"
  cp "$program" "$prefix/drive_c/Program Files/Quorvale/"
}

windows_path() { echo "Z:$(tr / '\\' <<< "$1")"; }

play() { # NAME
  local name=$1 file first=0 number=1 status like user former="" folder prefix output
  file=$PWD/tests/scenarios/$name.txt
  folder=$work/$name
  rm -rf "$folder"
  mkdir -p "$folder"
  output=$folder/output
  while :; do
    # The machine's line, from the one where this part of the scenario starts.
    read -r like user < <(sed -n "$((first > 0 ? first : 1)),\$s/^machine //p" "$file" | head -1)
    prefix=$folder/prefix$number
    "$lay_machine" "$folder/machine$number" "$like" "${user:-Anna}" "$number" || return 1
    make_prefix "$prefix" "$folder/machine$number"
    local -a words=(--program "C:\\Program Files\\Quorvale\\Quorvale.exe"
      --scenario "$(windows_path "$file")" --machine "$(windows_path "$folder/machine$number")"
      --first "$first")
    [ -n "$former" ] && words+=(--former "$(windows_path "$former")")
    (
      wine_use_prefix "$prefix"
      timeout -k 5 "$limit" "$(wine_command)" "$driver" "${words[@]}" < /dev/null
    ) > "$output" 2>&1
    status=$?
    WINEPREFIX=$prefix wineserver -k > /dev/null 2>&1
    [ $status = 10 ] || break
    first=$(tr -d '\r' < "$output" | tail -1)
    # The former machine's drives, as the driver looks for them.
    former=$prefix
    number=$((number + 1))
  done
  [ $status = 124 ] && echo "it was not at its end after $limit seconds" >> "$output"
  return $status
}

# The outcome of one scenario, in a file: two are played at a time.
play_into_file() {
  local name=$1 start=$SECONDS status
  play "$name"
  status=$?
  if [ $status = 0 ]; then
    echo "ok: $name ($((SECONDS - start)) s)"
    rm -rf "${work:?}/$name"
  else
    echo "FAILED: $name (status $status, $((SECONDS - start)) s)"
    tr -d '\r' < "$work/$name/output" | tail -20 | sed 's/^/    /'
  fi > "$work/$name.result"
}

if [ $# -gt 0 ]; then
  names=("$@")
else
  names=()
  for file in tests/scenarios/*.txt; do names+=("$(basename "$file" .txt)"); done
fi
mkdir -p "$work"
rm -f "$work"/*.result
if ! virtual_display_start; then
  echo "no virtual display"
  echo "0 passed, 1 failed"
  exit 1
fi
trap virtual_display_end EXIT
(wine_use_prefix "$work/base")

passed=0
failed=0
left_out=0
players=()
for name in "${names[@]}"; do
  reason=$(exception "$name")
  if [ -n "$reason" ]; then
    echo "left out: $name: $reason"
    left_out=$((left_out + 1))
    continue
  fi
  while [ "$(jobs -rp | grep -vxc "$virtual_display_pid")" -ge 2 ]; do sleep 0.2; done
  play_into_file "$name" &
  players+=($!)
done
wait ${players[@]+"${players[@]}"}
for name in "${names[@]}"; do
  [ -f "$work/$name.result" ] || continue
  cat "$work/$name.result"
  if grep -q '^ok: ' "$work/$name.result"; then passed=$((passed + 1)); else failed=$((failed + 1)); fi
done
[ $left_out = 0 ] || echo "$left_out left out, for the reasons above"
echo "$passed passed, $failed failed"
[ "$failed" = 0 ] && [ "$passed" -gt 0 ]

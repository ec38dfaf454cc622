#!/usr/bin/env bash
# One archive, two editions: what the console edition saves comes back in the program's real
# windows, and what the program saves there comes back by the console edition. Ends with one line:
# how many passed, how many failed.
#
#   tests/windows/exchange.sh PROGRAMS HOST_PROGRAMS CONSOLE [SCENARIO...]
#
# The first arguments are those of play_scenarios.sh; CONSOLE is the console edition. Without names
# both ways are gone.
set -uo pipefail
cd "$(dirname "$0")/../.."
. tools/wine.sh
. tests/windows/computer.sh

programs=$(realpath "${1:?the build folder of the Windows programs}")
host_programs=$(realpath "${2:?the folder of the programs that make machines}")
console=$(realpath "${3:?the console edition}")
shift 3
lay_machine=$host_programs/lay_machine
compare_machines=$host_programs/compare_machines
work=${QUORVALE_PLAY_FOLDER:-$PWD/build/play}
. tests/windows/player.sh
scenario_folders+=(tests/windows/exchange)

# The sample's one file without a dot in its name stays out, which the console edition tells.
told_or_done() { "$@" || [ $? = 4 ]; }

# From Anna's computer onto Bernd's, and everything compared.
compare() { # BEFORE AFTER [wine]
  "$compare_machines" "$1" xp Anna 1 "$2" xp Bernd 1 ${3:+"$3"}
}

restore_from_console() {
  local source=$work/console output folder number prefix
  rm -rf "$source"
  "$lay_machine" "$source" xp Anna 1 &&
    told_or_done "$console" --machine "$source" --yes backup "From console" --all \
      --add-folder 'D:\Projects\House & garden' --add-file 'D:\Scans\receipt 12.pdf' --to 'D:\Out' ||
    return 1
  if ! play restore_from_console "$source"; then
    cat "$output"
    return 1
  fi
  read_back "$prefix" "$folder/machine$number" "$folder/after" || return 1
  WINEPREFIX=$prefix wineserver -k > /dev/null 2>&1
  compare "$source" "$folder/after" wine
}

backup_for_console() {
  local target=$work/console_target output folder number prefix archive
  rm -rf "$target"
  if ! play backup_for_console; then
    cat "$output"
    return 1
  fi
  archive="$prefix/drive_c/Documents and Settings/Anna/Application Data/Tarnwick/Quorvale/Backup/From program.obk"
  "$console" machine new "$target" --like xp --user Bernd &&
    told_or_done "$console" --machine "$target" --yes restore "$archive" --all &&
    compare "$folder/machine1" "$target"
}

mkdir -p "$work"
if ! virtual_display_start; then
  echo "no virtual display"
  echo "0 passed, 1 failed"
  exit 1
fi
trap virtual_display_end EXIT
prepare_base
[ $# -gt 0 ] || set -- restore_from_console backup_for_console
passed=0
failed=0
for name in "$@"; do
  start=$SECONDS
  if "$name" > "$work/$name.log" 2>&1; then
    passed=$((passed + 1))
    echo "ok: $name ($((SECONDS - start)) s; $(sed -n 's/^the same: //p' "$work/$name.log"))"
    rm -rf "${work:?}/$name" "$work/console" "$work/console_target"
  else
    failed=$((failed + 1))
    echo "FAILED: $name (status 1, $((SECONDS - start)) s)"
    tr -d '\r' < "$work/$name.log" | tail -20 | sed 's/^/    /'
  fi
done
echo "$passed passed, $failed failed"
[ "$failed" = 0 ] && [ "$passed" -gt 0 ]

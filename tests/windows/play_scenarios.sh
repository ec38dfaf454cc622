#!/usr/bin/env bash
# Plays scenarios against the real windows of Quorvale.exe under Wine, two at a time, and ends with
# one line: how many passed, how many failed.
#
#   tests/windows/play_scenarios.sh PROGRAMS HOST_PROGRAMS [SCENARIO...]
#
# PROGRAMS is the build folder of the Windows programs, HOST_PROGRAMS the folder of those host
# programs that make and compare machines. Without names all files of tests/scenarios,
# tests/ftp_scenarios (whose servers this script starts), tests/round_trips and
# tests/windows/scenarios are played; after a round trip the computer is compared, file by file and
# value by value, with what it was before. QUORVALE_PLAY_FOLDER takes the Wine prefixes and logs;
# those of failed scenarios stay there.
set -uo pipefail
cd "$(dirname "$0")/../.."
# The scenarios of tests/ftp_scenarios find their servers in the environment.
if [ -z "${FTP_PYFTPDLIB_PORT:-}" ]; then
  exec tests/support/ftp_servers/with_ftp_servers.py odd,pyftpdlib,pureftpd \
    tests/windows/play_scenarios.sh "$@"
fi
. tools/wine.sh
. tests/windows/computer.sh

programs=$(realpath "${1:?the build folder of the Windows programs}")
host_programs=$(realpath "${2:?the folder of the programs that make machines}")
shift 2
lay_machine=$host_programs/lay_machine
compare_machines=$host_programs/compare_machines
work=${QUORVALE_PLAY_FOLDER:-$PWD/build/play}
. tests/windows/player.sh

# Scenarios that need a fact which only a simulated computer can be given; each with its reason.
exception() {
  case $1 in
    backup_no_space) echo "a full disk" ;;
    restore_no_space) echo "a full disk" ;;
    restore_share_silent) echo "a network share that falls silent" ;;
    backup_to_share_*) echo "a network share: Wine has none" ;;
    media_disc_*) echo "a disc writer: Wine has none" ;;
    schedule_service_stopped) echo "a stopped scheduler: Wine starts it with its first use" ;;
  esac
}

if [ $# -gt 0 ]; then
  names=("$@")
else
  mapfile -t names < <(scenario_names "${scenario_folders[@]}")
fi
mkdir -p "$work"
rm -f "$work"/*.result
if ! virtual_display_start; then
  echo "no virtual display"
  echo "0 passed, 1 failed"
  exit 1
fi
trap virtual_display_end EXIT
prepare_base

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

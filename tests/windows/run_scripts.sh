#!/usr/bin/env bash
# Runs the scripts of tests/windows/scripts, which work the real windows, one after the other and one
# test each; the times that they measured are printed. Ends with one line: how many passed, how many
# failed.
#
#   tests/windows/run_scripts.sh PROGRAMS LAY_MACHINE LOGS
#
# PROGRAMS is the build folder of the Windows programs, LAY_MACHINE the host program that makes the
# machine; LOGS takes the outputs and the pictures of screens.
set -uo pipefail
cd "$(dirname "$0")/../.."
programs=${1:?the build folder of the Windows programs}
lay_machine=${2:?the program that makes machines}
logs=${3:?the folder for logs}

passed=0
failed=0
for script in tests/windows/scripts/*.sh; do
  name=$(basename "$script" .sh)
  log=$logs/$name.log
  if QUORVALE_PLAY_FOLDER=$logs timeout -k 10 900 "$script" "$programs" "$lay_machine" \
    < /dev/null > "$log" 2>&1; then
    passed=$((passed + 1))
    echo "ok: $name"
    grep -E ' ms$' "$log" | sed 's/^/    /'
  else
    failed=$((failed + 1))
    echo "FAILED: $name"
    tail -20 "$log" | sed 's/^/    /'
  fi
done
echo "$passed passed, $failed failed"
[ "$failed" = 0 ] && [ "$passed" -gt 0 ]

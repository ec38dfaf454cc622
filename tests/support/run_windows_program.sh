#!/usr/bin/env bash
# Runs a Windows program and prints what it printed. That goes through a file, since servers of Wine
# that the program starts outlive it, and would hold a pipe to the caller open.
#
#   tests/support/run_windows_program.sh WINE PROGRAM [ARGUMENT...]
set -u
output=$(mktemp)
"$@" > "$output" 2>&1 < /dev/null
status=$?
cat "$output"
rm -f "$output"
exit "$status"

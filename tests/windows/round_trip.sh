#!/usr/bin/env bash
# Whole round trips in real windows, one for each system that Wine can report: a backup by the
# wizard, the data destroyed, a restore by the wizard, and everything compared with what was there.
#
#   tests/windows/round_trip.sh PROGRAMS HOST_PROGRAMS
#
# The arguments are those of play_scenarios.sh.
set -uo pipefail
cd "$(dirname "$0")/../.."
names=()
for file in tests/round_trips/*.txt; do names+=("$(basename "$file" .txt)"); done
exec tests/windows/play_scenarios.sh "${1:?}" "${2:?}" "${names[@]}"

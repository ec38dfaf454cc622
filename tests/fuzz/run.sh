#!/usr/bin/env bash
# Runs each fuzz target for a while, two at a time; each must have done some work and found nothing.
# Ends with one line: how many passed, how many failed.
#
#   tests/fuzz/run.sh PROGRAMS LOGS
#
# PROGRAMS is the folder of the built targets; LOGS takes outputs, corpora and what was found.
# QUORVALE_FUZZ_SECONDS is the time of each target, 60 if not set.
set -uo pipefail
cd "$(dirname "$0")/../.."
programs=${1:?the folder of the fuzz targets}
logs=${2:?the folder for logs}
seconds=${QUORVALE_FUZZ_SECONDS:-60}

run_target() { # NAME
  local corpus=$logs/corpus_$1
  mkdir -p "$corpus"
  [ -d "tests/fuzz/corpus/$1" ] && cp -r "tests/fuzz/corpus/$1/." "$corpus/"
  timeout -k 10 $((seconds + 120)) "$programs/$1" -max_total_time="$seconds" -rss_limit_mb=1024 \
    -timeout=20 -artifact_prefix="$logs/fuzz_$1-" "$corpus" < /dev/null > "$logs/fuzz_$1.log" 2>&1
  echo $? > "$logs/fuzz_$1.status"
}

names=()
for source in tests/fuzz/*.cpp; do names+=("$(basename "$source" .cpp)"); done
for name in "${names[@]}"; do
  while [ "$(jobs -rp | wc -l)" -ge 2 ]; do sleep 0.2; done
  run_target "$name" &
done
wait
passed=0
failed=0
for name in "${names[@]}"; do
  log=$logs/fuzz_$name.log
  if [ "$(cat "$logs/fuzz_$name.status")" = 0 ] && grep -q '^Done [1-9][0-9]* runs' "$log"; then
    passed=$((passed + 1))
    echo "ok: fuzz_$name ($(sed -n 's/^Done \([0-9]* runs\).*/\1/p' "$log"))"
  else
    failed=$((failed + 1))
    tail -40 "$log"
    echo "FAILED: fuzz_$name"
  fi
done
echo "$passed passed, $failed failed"
[ "$failed" = 0 ] && [ "$passed" -gt 0 ]

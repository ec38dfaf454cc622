#!/usr/bin/env bash
# Fails, and names the files, if a source file is not laid out as .clang-format says.
set -euo pipefail
cd "$(dirname "$0")/.."
find src tests benchmarks \( -name '*.h' -o -name '*.cpp' \) -print0 |
  xargs -0 --no-run-if-empty clang-format --dry-run --Werror

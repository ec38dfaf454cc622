#!/usr/bin/env bash
# Compiles the help file from the pages in a folder.
#
#   tools/build_help.sh SOURCES OUT.chm
#
# The compiler ends with success even where a page links to what is not there; its words count.
set -euo pipefail
sources=$(realpath "$1")
out=$(realpath -m "$2")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# It writes beside its project.
cp "$sources"/* "$work/"
cd "$work"
if ! chmcmd Quorvale.hhp > log 2>&1 || grep -qi '^\(error\|warning\)' log || [ ! -s Quorvale.chm ]; then
  cat log
  echo "the help file was not made"
  exit 1
fi
mkdir -p "$(dirname "$out")"
mv Quorvale.chm "$out"

#!/usr/bin/env bash
# Fails, and names them, if a Windows program imports functions that are not in
# tools/known_imports.txt, asks for a newer subsystem than 4.0, or names a newer Windows in its
# manifest. Windows 98 and NT 4 (with the common controls of their time) have all that is listed.
#
#   tools/check_imports.sh PROGRAM.exe
set -euo pipefail
export LC_ALL=C
list=$(dirname "$0")/known_imports.txt
program=$1
failed=0

headers=$(i686-w64-mingw32-objdump -p "$program")
if ! grep -qE '^MajorSubsystemVersion[[:space:]]+4$' <<< "$headers" ||
  ! grep -qE '^MinorSubsystemVersion[[:space:]]+0$' <<< "$headers"; then
  echo "$program: the subsystem version is not 4.0"
  failed=1
fi

# "library function", in small letters for the library.
imports=$(awk '
  /DLL Name:/ { library = tolower($3) }
  library != "" && /^[[:space:]]+[0-9a-f]+[[:space:]]+[0-9]+[[:space:]]+[A-Za-z_?]/ { print library, $3 }
' <<< "$headers" | sort -u)
if [ -z "$imports" ]; then
  echo "$program: no imports were found"
  exit 1
fi
unknown=$(comm -23 <(echo "$imports") <(grep -v '^#' "$list" | sort -u))
if [ -n "$unknown" ]; then
  echo "$program imports what is not in $(basename "$list"):"
  echo "$unknown"
  failed=1
fi

if grep -aq 'supportedOS' "$program"; then
  echo "$program: the manifest names a newer Windows"
  failed=1
fi
echo "$(wc -l <<< "$imports") imported functions"
exit $failed

#!/usr/bin/env bash
# A Wine prefix, made by the Wine of this machine and filled by its registry editor, as an old disk:
# its user is listed, backed up, and the accounts are in the backup as they were put in. The prefix
# stays as it is.
#
#   wine_prefix_disk.sh CONSOLE_EDITION
set -euo pipefail
quorvale=$(realpath "$1")
. "$(dirname "$0")/../../tools/wine.sh"

place=$(mktemp -d)
finish() {
  wine_end
  rm -rf "$place"
}
trap finish EXIT
fail() {
  echo "FAILED: $*"
  exit 1
}

# A user's folder of Wine may hold files without a dot in their name: they are told, and left out.
told_or_done() { "$@" || [ $? = 4 ]; }

wine_use_prefix "$place/prefix"
cat > "$place/accounts.reg" << 'REG'
Windows Registry Editor Version 5.00

[HKEY_CURRENT_USER\Software\Microsoft\Windows Mail]
"Default Mail Account"="account{11111111-2222-3333-4444-555555555555}.oeaccount"
"Store Root"=hex(2):25,00,55,00,73,00,65,00,72,00,50,00,72,00,6f,00,66,00,69,00,\
  6c,00,65,00,25,00,5c,00,4d,00,61,00,69,00,6c,00,00,00

[HKEY_CURRENT_USER\Software\Microsoft\Internet Explorer\Main]
"Start Page"="http://start.example.org/"
"Odd \"name\""="line\\end"
"Bytes"=hex:00,01,ff

REG
"$(wine_command)" regedit /S "Z:${place//\//\\}\\accounts.reg"
wine_settle
user=$(find "$WINEPREFIX/drive_c/users" -mindepth 1 -maxdepth 1 -type d ! -name Public -printf '%f\n')
profile=$WINEPREFIX/drive_c/users/$user
mkdir -p "$profile/Favorites"
printf '[InternetShortcut]\r\nURL=http://example.org/\r\n' > "$profile/Favorites/Example.url"
printf 'a letter' > "$profile/Documents/letter.txt"

inventory() { (cd "$WINEPREFIX" && find . -printf '%p %s %T@ %l\n' | sort); }
inventory > "$place/before"
"$quorvale" machine users "$WINEPREFIX" | tee "$place/users"
grep -qP "^$user\tC:\\\\users\\\\$user\t" "$place/users" || fail "the user of the prefix is not listed"
told_or_done "$quorvale" --disk "$WINEPREFIX" backup "Mine" --all --to "$place"
inventory | cmp "$place/before" - || fail "the prefix was changed"

unzip -q -d "$place/out" "$place/Mine.obk"
cmp "$profile/Favorites/Example.url" "$place/out/Mine/Internet Explorer/Favorites/Example.url"
cmp "$profile/Documents/letter.txt" "$place/out/Mine/Other Files/Documents/letter.txt"
iconv -f UTF-16 -t UTF-8 "$place/out/Mine/Internet Explorer/IESettings/Current_User_Settings.reg" \
  | tr -d '\r' > "$place/settings"
for line in '"Start Page"="http://start.example.org/"' '"Odd \"name\""="line\\end"' \
  '"Bytes"=hex:00,01,ff'; do
  grep -qxF "$line" "$place/settings" || fail "not in the backup: $line"
done
"$quorvale" machine from "$WINEPREFIX" "$place/machine"
grep -qx "UserProfile = C:\\\\users\\\\$user" "$place/machine/machine.ini" || fail "no profile"
iconv -f UTF-16 -t UTF-8 "$place/machine/registry/HKEY_CURRENT_USER.reg" > "$place/user.reg"
grep -qF '"Default Mail Account"="account{11111111-2222-3333-4444-555555555555}.oeaccount"' \
  "$place/user.reg" || fail "the account of Windows Mail did not come over"

# Restored onto a machine folder, and compared.
"$quorvale" machine new "$place/new" --like vista --user Dora
told_or_done "$quorvale" --machine "$place/new" restore "$place/Mine.obk" --all --yes
cmp "$profile/Favorites/Example.url" "$place/new/drive_c/Users/Dora/Favorites/Example.url"
cmp "$profile/Documents/letter.txt" "$place/new/drive_c/Users/Dora/Documents/letter.txt"
echo "ok: a Wine prefix is an old disk"

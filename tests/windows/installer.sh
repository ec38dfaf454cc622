#!/usr/bin/env bash
# Installs Quorvale with its setup program under Wine, opens a backup by a double click, restores
# it, reads the help from each page, and removes the program. Done for all users and for one user.
# Each line "ok: ..." or "FAILED: ..." is one test; the last line counts them.
#
#   tests/windows/installer.sh PROGRAMS
#
# PROGRAMS is the build folder of the Windows programs; the setup program is in its package folder.
# QUORVALE_INSTALLER_FOLDER takes the Wine computer and the outputs.
set -uo pipefail
cd "$(dirname "$0")/../.."
. tools/wine.sh
. tests/windows/computer.sh

programs=$(realpath "${1:?the build folder of the Windows programs}")
work=${QUORVALE_INSTALLER_FOLDER:-$PWD/build/installer}
window_probe=$programs/tests/windows/driver/window_probe.exe
version=$(sed -n 's/^project(quorvale VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
setup=$programs/package/quorvale-$version-setup.exe
rm -rf "$work"
mkdir -p "$work"

passed=0
failed=0
# expect NAME COMMAND...: one test. What the command says is shown if it fails.
expect() {
  local name=$1
  shift
  if "$@" > "$work/said" 2>&1; then
    passed=$((passed + 1))
    echo "ok: $name"
  else
    failed=$((failed + 1))
    echo "FAILED: $name"
    sed 's/^/    /' "$work/said" | tail -15
  fi
}
finish() {
  wine_end
  virtual_display_end
}
if ! virtual_display_start; then
  echo "no virtual display"
  echo "0 passed, 1 failed"
  exit 1
fi
trap finish EXIT
wine_use_prefix "$work/prefix"
c=$WINEPREFIX/drive_c

# A Windows program to its end; its output, which may be in a pipe's way, through a file.
windows_run() {
  local status
  timeout -k 5 120 "$(wine_command)" "$@" > "$work/output" 2> /dev/null < /dev/null
  status=$?
  tr -d '\r' < "$work/output"
  return $status
}
# The same for a line of the system's own prompt, with the quotes as they stand.
windows_line() { # LINE
  printf '@%s\r\n@exit %%ERRORLEVEL%%\r\n' "$1" > "$c/line.bat"
  windows_run cmd /c 'C:\line.bat'
  local status=$?
  rm -f "$c/line.bat"
  return $status
}
# The data of a registry value; VALUE "" is the unnamed one.
value_of() { # KEY VALUE
  local -a what=(/ve)
  [ -n "$2" ] && what=(/v "$2")
  windows_run reg query "$1" "${what[@]}" | sed -n 's/^ .*REG_[A-Z]*  *\(.*\)$/\1/p' | head -1
}
value_is() { # KEY VALUE EXPECTED
  local found
  found=$(value_of "$1" "$2")
  [ "$found" = "$3" ] || { echo "$1 $2: $found"; return 1; }
}
key_is_gone() { ! windows_run reg query "$1"; }
# The host's path of a path on the Windows computer.
host_path() { echo "$c/$(sed 's/^[Cc]:[\\]//' <<< "$1" | tr '\\' /)"; }
until_gone() { # PATH: waits for a minute
  local tries=0
  while [ -e "$1" ] && [ $tries -lt 300 ]; do
    sleep 0.2
    tries=$((tries + 1))
  done
  [ ! -e "$1" ]
}
same_file() { cmp "$1" "$2"; }
file_is_there() { [ -f "$1" ] || { echo "missing: $1"; return 1; }; }
all_files() { (cd "$c" && find . -type f ! -path './windows/*' ! -path '*/Temp/*' | sort); }
status_is() { # EXPECTED COMMAND...
  local expected=$1 status
  shift
  "$@"
  status=$?
  [ $status = "$expected" ] || { echo "it ended with $status"; return 1; }
}
text_is() { # FORM.CONTROL EXPECTED
  local found
  found=$(probe shown "$1")
  [ "$found" = "$2" ] || { echo "$1 shows \"$found\""; return 1; }
}
# Clicks and waits: a page's button can be used once its work is done.
press() { act wait-enabled "$1" 60 && act click "$1"; }
answer_box() { # EXPECTED
  local text
  text=$(probe box 60) || { echo "$text"; return 1; }
  probe answer OK
  [ "$text" = "$1" ] || { echo "the message: $text"; return 1; }
}

# --- The setup program's own words ----------------------------------------------------------------

has_version_fact() { # FILE WORD VALUE, both in UTF-16
  python3 - "$@" << 'PYTHON'
import sys
data = open(sys.argv[1], "rb").read()
word = (sys.argv[2] + "\0").encode("utf-16le")
place = data.find(word)
found = data[place + len(word):place + len(word) + 64].decode("utf-16le", "replace")
print(found)
sys.exit(0 if place >= 0 and found.lstrip("\0").startswith(sys.argv[3] + "\0") else 1)
PYTHON
}
expect "the setup program was built" file_is_there "$setup"
expect "the setup program carries the project's version" \
  has_version_fact "$setup" ProductVersion "$version"
for file in Quorvale.chm chimes.wav; do
  expect "$file was built beside the program" file_is_there "$programs/src/app/$file"
done

is_a_short_sound() { # FILE
  python3 - "$1" << 'PYTHON'
import sys
import wave
with wave.open(sys.argv[1]) as sound:
    seconds = sound.getnframes() / sound.getframerate()
    data = sound.readframes(sound.getnframes())
facts = (sound.getframerate(), sound.getnchannels(), round(seconds, 1), max(data) > 0)
print(facts)
sys.exit(0 if facts[:2] == (22050, 1) and 0.5 < seconds < 2 and facts[3] else 1)
PYTHON
}
expect "the chime is a short sound" is_a_short_sound "$programs/src/app/chimes.wav"

# --- One round: install, use, remove --------------------------------------------------------------

# The files of the user that no installer may touch.
user_home=$c/users/$(id -un)
lay_user_files() {
  mkdir -p "$user_home/Documents" "$user_home/AppData/Roaming/Tarnwick/Quorvale/Backup" \
    "$user_home/AppData/Roaming/Tarnwick/Quorvale/Files/Logs" "$c/Letters"
  echo "a letter" > "$c/Letters/a letter.txt"
  tests/windows/make_backup.py "$user_home/Documents/My first & best backup.obk" \
    'C:\Letters\a letter.txt' "the letter from the backup"
  echo "kept" > "$user_home/AppData/Roaming/Tarnwick/Quorvale/Backup/old one.obk"
  echo "kept" > "$user_home/AppData/Roaming/Tarnwick/Quorvale/Files/Logs/Settings_old one.xml"
  windows_run reg add 'HKCU\Software\Tarnwick\Quorvale\Settings' /v chkLog /t REG_SZ /d 1 /f
}
opened='C:\users\'$(id -un)'\Documents\My first & best backup.obk'
old_backup=$user_home/AppData/Roaming/Tarnwick/Quorvale/Backup/"old one.obk"

installed_whole() { # FOLDER
  local file
  for file in Quorvale.exe Quorvale.chm chimes.wav; do
    cmp "$programs/src/app/$file" "$1/$file" || return 1
  done
  [ -f "$1/Uninstall.exe" ]
}
start_menu_entries() { find "$c" -path '*Start Menu*' -name '*.lnk' -path '*Quorvale*' | wc -l; }
desktop_entries() { find "$c" -path '*Desktop*' -name 'Quorvale.lnk' | wc -l; }
counts() { # EXPECTED COMMAND
  local found
  found=$("$2")
  [ "$found" = "$1" ] || { echo "$2: $found"; return 1; }
}
# A Wine that does not look into a user's own classes is helped as the shell would do it: the
# registered command, with the path in place of its mark.
open_by_double_click() { # KEY
  local command
  if windows_run reg query 'HKCR\.obk' > /dev/null; then
    windows_run start "$opened" || return 1
  else
    command=$(value_of "$1" "")
    windows_line "start \"\" ${command%%\%1*}$opened${command##*\%1}" || return 1
  fi
  act wait FrmWelcome 60
}
restore_opened_backup() {
  echo "newer text" > "$c/Letters/a letter.txt"
  press FrmWelcome.cmdWC_Restore && act wait frmROne 60 && text_is frmROne.txtpath "$opened" &&
    press frmROne.cmdNext && act wait frmRTwo 60 &&
    act tick frmRTwo.tvwMain 'Added More Files' &&
    press frmRTwo.cmdNext && act wait frmRfour 60 && press frmRfour.cmdNext &&
    answer_box "Backup successfully restored" &&
    grep -qx "the letter from the backup" "$c/Letters/a letter.txt"
}

round() { # MODE FOLDER ROOT
  local mode=$1 folder=$2 root=$3 installed classes
  installed=$(host_path "$folder")
  classes="$root\\Software\\Classes"
  all_files > "$work/before"
  expect "$mode: the silent setup ends with 0" status_is 0 windows_run "$setup" /S "/$mode" \
    /DesktopLink
  expect "$mode: the files are installed whole" installed_whole "$installed"
  expect "$mode: three entries in the Start menu" counts 3 start_menu_entries
  expect "$mode: the shortcut on the desktop that was asked for" counts 1 desktop_entries
  expect "$mode: a .obk file is a Quorvale backup" value_is "$classes\\.obk" "" Quorvale.Backup
  expect "$mode: the path is handed over in quotes" value_is \
    "$classes\\Quorvale.Backup\\shell\\open\\command" "" "\"$folder\\Quorvale.exe\" \"%1\""
  expect "$mode: the version in the list of programs" value_is \
    "$root\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Quorvale" DisplayVersion \
    "$version"

  expect "$mode: a double click on a backup starts the program" open_by_double_click \
    "$classes\\Quorvale.Backup\\shell\\open\\command"
  expect "$mode: the opened backup is the chosen one, and is restored" restore_opened_backup
  # With its own folder named it does not copy itself away, so that its end can be waited for.
  expect "$mode: nothing is removed while the program runs" status_is 2 windows_line \
    "start /wait \"\" \"$folder\\Uninstall.exe\" /S /$mode _?=$folder"
  expect "$mode: all files are still there" installed_whole "$installed"
  expect "$mode: the program ends" act shuts

  echo "mine" > "$installed/notes of the user.txt"
  windows_run "$folder\\Uninstall.exe" /S "/$mode"
  expect "$mode: the uninstaller ends" until_gone "$installed/Uninstall.exe"
  wine_settle
  expect "$mode: a file of the user in the program's folder stays" \
    file_is_there "$installed/notes of the user.txt"
  rm -rf "$installed"
  expect "$mode: no other file is left" no_file_is_left
  expect "$mode: the association is gone" key_is_gone "$classes\\Quorvale.Backup"
  expect "$mode: the entry in the list of programs is gone" key_is_gone \
    "$root\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Quorvale"
  expect "$mode: backups stay" grep -qx kept "$old_backup"
  expect "$mode: settings stay" value_is 'HKCU\Software\Tarnwick\Quorvale\Settings' chkLog 1
}
# What the program itself keeps for the user, and what Windows notes about opened files, stays.
no_file_is_left() {
  all_files > "$work/after"
  local more
  more=$(comm -13 "$work/before" "$work/after" | grep -v '/AppData/Roaming/Tarnwick/\|/Recent/')
  [ -z "$more" ] || { echo "$more"; return 1; }
  more=$(comm -23 "$work/before" "$work/after")
  [ -z "$more" ] || { echo "lost: $more"; return 1; }
}

lay_user_files > /dev/null
# Raised rights are another road, on which the program starts itself anew.
windows_run reg add 'HKCU\Software\Wine' /v Version /t REG_SZ /d winxp /f > /dev/null
round AllUsers 'C:\Program Files\Quorvale' HKLM
per_user=$(windows_run cmd /c 'echo %LOCALAPPDATA%')
[ -n "$per_user" ] && [ "$per_user" != '%LOCALAPPDATA%' ] ||
  per_user='C:\users\'$(id -un)'\Local Settings\Application Data'
round CurrentUser "$per_user\\Programs\\Quorvale" HKCU

# --- Another program's association, a folder of one's own, and the removal of everything ----------

windows_run reg add 'HKLM\Software\Classes\.obk' /ve /t REG_SZ /d Other.Kind /f > /dev/null
own='C:\Tools and more\Quorvale'
expect "own folder: the setup installs there" status_is 0 windows_line \
  "start /wait \"\" \"$(windows_path "$setup")\" /S /AllUsers /D=$own"
expect "own folder: the files are there" installed_whole "$(host_path "$own")"
expect "own folder: no shortcut on the desktop unless asked for" counts 0 desktop_entries
expect "own folder: a second setup over the first ends with 0" status_is 0 windows_run "$setup" /S \
  /AllUsers
expect "own folder: and it stays where the first was" installed_whole "$(host_path "$own")"

# --- Help -----------------------------------------------------------------------------------------

# Wine's help viewer tells in its trace which topic it shows.
topics=$work/topics
start_with_trace() {
  WINEDEBUG=-all,+htmlhelp "$(wine_command)" "$own\\Quorvale.exe" > /dev/null 2> "$topics" \
    < /dev/null &
  act wait FrmWelcome 60
}
help_opens() { # FORM TOPIC
  local title from asked
  from=$(stat -c %s "$topics")
  act wait "$1" 60 && act keys f1 && title=$(probe help) || { echo "$title"; return 1; }
  [ "$title" = "Quorvale Help" ] || { echo "the viewer's title: $title"; return 1; }
  asked=$(tail -c "+$((from + 1))" "$topics" | grep -ai 'HtmlHelp[AW].*Quorvale.chm' | tail -1)
  grep -qF "Quorvale.chm::/$2" <<< "$asked" && return 0
  echo "the viewer was asked for: $asked"
  return 1
}
expect "help: the program starts" start_with_trace
press FrmWelcome.cmdWC_TakeBackup
expect "help: F1 on the job page" help_opens frmOne qvlBackup.htm
act wait frmOne && act set frmOne.txtBackupname "Help" && press frmOne.cmdNext
expect "help: F1 on the items page" help_opens FrmTwo qvlBackup.htm
act tick FrmTwo.tvwMain 'Other Files\My Desktop Files' && press FrmTwo.cmdNext
expect "help: F1 on the options page" help_opens frmThree qvlBackup.htm
press frmThree.cmdNext
expect "help: F1 on the media page" help_opens FrmBackupMedia qvlBackup.htm
press FrmBackupMedia.cmdNext
expect "help: F1 on the review page" help_opens frmfour qvlBackup.htm
press frmfour.cmdCancel
press FrmWelcome.cmdWC_Restore
expect "help: F1 on the restore page" help_opens frmROne Restoration.htm
press frmROne.cmdCancel
press 'FrmWelcome.lblQuicklinks(1)'
expect "help: F1 on the settings page" help_opens frmSettings qvlSettings.htm
press frmSettings.cmdCancel
press 'FrmWelcome.lblQuicklinks(2)'
expect "help: F1 on the schedule page" help_opens frmSchedule 'Schedule Backup.htm'
press FrmWelcome.CmdWC_Home
viewer_of() { # PROGRAM
  local tries=0
  until xwininfo -root -tree | grep -qi "\"Quorvale Help\".*$1"; do
    sleep 0.5
    tries=$((tries + 1))
    [ $tries -lt 60 ] || { xwininfo -root -tree | grep '"'; return 1; }
  done
}
press FrmWelcome.cmdWC_Restore
act wait frmROne 60 && act keys f1
expect "help: the viewer stands beside the program" viewer_of Quorvale.exe
expect "help: the program ends with its viewer" act shuts
expect "help: the program starts again" start_with_trace
press FrmWelcome.CmdWC_Help
expect "help: the button opens the help file" viewer_of hh.exe
windows_run taskkill /f /im hh.exe > /dev/null
expect "help: the program ends after it" act shuts

windows_run "$own\\Uninstall.exe" /S /AllUsers /DeleteUserData
expect "everything: the program's folder goes" until_gone "$(host_path "$own")"
wine_settle
expect "everything: the other program has its association back" value_is \
  'HKLM\Software\Classes\.obk' "" Other.Kind
expect "everything: the settings are gone" key_is_gone 'HKCU\Software\Tarnwick'
expect "everything: the program's folder of the user is gone" [ ! -e \
  "$user_home/AppData/Roaming/Tarnwick" ]
expect "everything: a backup elsewhere stays" file_is_there \
  "$user_home/Documents/My first & best backup.obk"

echo "$passed passed, $failed failed"
[ "$failed" = 0 ] && [ "$passed" -gt 0 ]

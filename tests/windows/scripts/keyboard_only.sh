#!/usr/bin/env bash
# A whole backup and a whole restore in the real windows of Quorvale.exe under Wine, by keys alone:
# no act here uses the mouse. Then what Esc, Shift+Tab and the access keys do.
#
#   tests/windows/keyboard_only.sh PROGRAMS LAY_MACHINE
#
# PROGRAMS is the build folder of the Windows programs, LAY_MACHINE the host program that makes the
# machine. QUORVALE_PLAY_FOLDER takes the Wine prefix.
set -euo pipefail
cd "$(dirname "$0")/../../.."
. tools/wine.sh
. tests/windows/computer.sh
prepare_window_script keyboard "$@"

fail() {
  echo "FAILED: $*"
  exit 1
}
press() { act keys "$@"; }
# Asks until the answer is right, for as long as a busy machine may take.
comes_to() { # EXPECTED ACT [WORD...]
  local expected=$1 end=$((SECONDS + 60))
  shift
  until found=$(act "$@") && [ "$found" = "$expected" ]; do
    [ $SECONDS -lt $end ] || return 1
    sleep 0.2
  done
}
focus_is() { # CONTROL
  comes_to "$1" focus || fail "the keyboard is in \"$found\" and not in $1"
}
shows() { # CONTROL TEXT
  comes_to "$2" shown "$1" || fail "$1 shows \"$found\" and not \"$2\""
}

use_annas_computer
profile="$work/wine/drive_c/Documents and Settings/Anna"
data="$profile/Application Data/Tarnwick/Quorvale"

act start "$(windows_path "$work/machine")" "$installed_program"
act wait FrmWelcome
act wait-enabled FrmWelcome.cmdWC_TakeBackup

# Once around the home page, and one step back.
focus_is FrmWelcome.cmdWC_TakeBackup
press tab
focus_is FrmWelcome.cmdWC_Restore
press tab tab tab
focus_is 'FrmWelcome.lblQuicklinks(2)'
press shift+tab
focus_is 'FrmWelcome.lblQuicklinks(1)'

# Esc leaves a page, Enter on a link follows it.
press enter
act wait frmSettings
press esc
act wait-gone frmSettings
echo "ok: a link by Enter, a page left by Esc"

# The backup. Enter presses Next from wherever the keyboard is.
press alt+b
act wait frmOne
focus_is frmOne.txtBackupname
press "text:By keys"
shows frmOne.txtBackupname "By keys"
press tab down
shows frmOne.OptQuick 1
press up
shows frmOne.OptCustBackup 1
press enter
act wait FrmTwo
focus_is FrmTwo.tvwMain
press home space
press right down
shows FrmTwo.tvwMain 'Outlook Express\Account Settings'
press alt+b
act wait frmOne
press enter
act wait FrmTwo
press alt+n
act wait frmThree
focus_is frmThree.txtcurrent
press alt+p
shows frmThree.chkProtectArchive 1
press tab
focus_is frmThree.txtpwd
press text:secret alt+o
focus_is frmThree.txtpwd2
press text:secret alt+v
focus_is frmThree.cmbCompLevel
press home
shows frmThree.cmbCompLevel Maximum
press enter
act wait FrmBackupMedia
press enter
act wait frmfour
act wait-enabled frmfour.cmdNext
press enter
[ "$(act box 120)" = "Backup successfully completed" ] || fail "the backup did not complete"
press enter
act wait-gone frmFinish
[ -s "$data/Backup/By keys.obk" ] || fail "there is no backup file"
echo "ok: a backup by keys alone"

# What was saved is lost.
mailbox=$(find "$profile" -iname 'Inbox.dbx' | head -1)
[ -n "$mailbox" ] || fail "the machine has no mailbox"
cp "$mailbox" "$work/inbox"
rm "$mailbox"

# The file manager has opened the backup's folder.
act shut-explorer
act front
press alt+r
act wait frmROne
press alt+p
focus_is frmROne.txtDefaultPassword
press text:secret enter
act wait frmRTwo
focus_is frmRTwo.tvwMain
press home space enter
act wait frmRfour
press enter
[ "$(act box 120)" = "Backup successfully restored" ] || fail "the restore did not complete"
press enter
act wait-gone frmRFinish
cmp "$mailbox" "$work/inbox" || fail "the mailbox did not come back as it was"
echo "ok: a restore by keys alone"

act shuts

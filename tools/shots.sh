#!/usr/bin/env bash
# Pictures of the Windows program's pages and dialogs, taken under Wine on a display of their own,
# on a computer with mail, settings and files in it.
#
#   tools/shots.sh [FOLDER]     (build/shots)
#
# Every page is reached as a person reaches it and is taken twice: FOLDER/96 and FOLDER/120 hold
# the pictures at 96 and at 120 dots per inch. QUORVALE_SHOTS_DPI names another list,
# QUORVALE_SHOTS_SCREEN another size of the screen than 1024x768, and QUORVALE_SHOTS_PAGES some of
# the groups of pages (home backup quick restore upload schedule other; restore needs backup).
set -euo pipefail
cd "$(dirname "$0")/.."
# The upload finds its server in the environment.
if [ -z "${FTP_ODD_PORT-}" ]; then
  exec tests/support/ftp_servers/with_ftp_servers.py odd tools/shots.sh "$@"
fi
. tools/wine.sh
. tests/windows/computer.sh
folder=${1:-build/shots}
programs=${QUORVALE_PROGRAMS:-build/$(windows_preset)}
console=${QUORVALE_CONSOLE:-build/host-release/src/app/quorvale}
program=$programs/src/app/Quorvale.exe
window_probe=$programs/tests/windows/driver/window_probe.exe
screen=${QUORVALE_SHOTS_SCREEN:-1024x768}
groups=${QUORVALE_SHOTS_PAGES:-home backup quick restore upload schedule other}
work=$(mktemp -d)

finish() {
  local status=$?
  [ $status = 0 ] || [ -z "$virtual_display_pid" ] || import -silent -window root "$folder/failed.png"
  [ -z "${WINEPREFIX-}" ] || wine_end
  virtual_display_end
  rm -rf "$work"
  exit $status
}
trap finish EXIT

# The screen as it is: SECONDS later, so that what moves has come to rest.
shot() { # NAME [SECONDS]
  sleep "${2:-0.4}"
  import -silent -window root "$pictures/$1.png"
  echo "$pictures/$1.png"
}
next_page() { # FROM TO
  act click "$1.cmdNext"
  act wait "$2"
}

backup_pages() {
  act click FrmWelcome.cmdWC_TakeBackup
  act wait frmOne
  act set frmOne.txtBackupname "My mail"
  shot backup_job
  next_page frmOne FrmTwo
  shot backup_items
  act tick FrmTwo.tvwMain 'Outlook Express\Email Messages'
  act tick FrmTwo.tvwMain 'Outlook Express\Account Settings'
  act tick FrmTwo.tvwMain 'Internet Explorer'
  act tick FrmTwo.tvwMain 'Other Files\My Documents'
  act select FrmTwo.tvwMain 'Outlook Express\Email Messages\Inbox.dbx'
  shot backup_items_mail
  act select FrmTwo.tvwMain 'Outlook Express\Account Settings'
  act keys right down
  shot backup_items_account
  act select FrmTwo.tvwMain 'Outlook Express'
  act keys left down
  act keys right
  shot backup_items_outlook
  act select FrmTwo.tvwMain 'Internet Explorer\IESettings'
  act keys right down
  shot backup_items_browser
  act click FrmTwo.cmdNext
  act wait frmThree
  shot backup_options_plain
  act check frmThree.chkProtectArchive 1
  act check frmThree.chkSplit 1
  act set frmThree.txtpwd secret
  act set frmThree.txtpwd2 secret
  shot backup_options
  act check frmThree.chkSplit 0
  act check frmThree.chklogdetails 1
  next_page frmThree FrmBackupMedia
  shot backup_media
  act check FrmBackupMedia.ChkFTP 1
  shot backup_media_ftp
  act check FrmBackupMedia.ChkHardDisk 1
  next_page FrmBackupMedia frmfour
  shot backup_review
  next_page frmfour frmFinish
  shot backup_run_files 0.2
  probe wait-shown frmFinish.LblCurrentFileinProgress "File Name: C" 20 || true
  shot backup_run 0.2
  act box 120 > "$work/said"
  shot backup_done
  act answer OK
  act wait-gone frmFinish
  act shut-explorer
  shot home_after_backup
}

# To a server that takes the beginning of the file and then nothing more.
upload_pages() {
  act click FrmWelcome.cmdWC_TakeBackup
  act wait frmOne
  act set frmOne.txtBackupname "My mail elsewhere"
  next_page frmOne FrmTwo
  act tick FrmTwo.tvwMain 'Other Files\My Documents'
  next_page FrmTwo frmThree
  next_page frmThree FrmBackupMedia
  act check FrmBackupMedia.ChkFTP 1
  act set FrmBackupMedia.TxtHostname 127.0.0.1
  act set FrmBackupMedia.TxtPort "$FTP_ODD_PORT"
  act set FrmBackupMedia.TxtUserName stall
  act set FrmBackupMedia.TxtPassword secret
  act set FrmBackupMedia.TxtRemoteDir upload
  next_page FrmBackupMedia frmfour
  act click frmfour.cmdNext
  act wait-shown FrmProcess.lblStatus 150
  shot upload_run 1
  act close FrmProcess
  act box 120 > "$work/said"
  act answer OK
  act wait-gone frmFinish
  act shut-explorer
}

quick_pages() {
  act click 'FrmWelcome.lblQuicklinks(0)'
  act wait FrmQuickSteps
  shot quick_steps 1.5
  act wait frmfour
  shot quick_review 1
  act click frmfour.cmdCancel
  act wait-gone frmfour
}

restore_pages() {
  act click FrmWelcome.cmdWC_Restore
  act wait frmROne
  shot restore_file
  act set frmROne.txtDefaultPassword wrong
  act click frmROne.cmdNext
  act box > "$work/said"
  shot restore_password
  act answer OK
  act set frmROne.txtDefaultPassword secret
  next_page frmROne frmRTwo
  shot restore_items
  act tick frmRTwo.tvwMain 'Outlook Express'
  act tick frmRTwo.tvwMain 'Internet Explorer'
  act tick frmRTwo.tvwMain 'Other Files'
  act select frmRTwo.tvwMain 'Outlook Express\Email Messages\Inbox.dbx'
  shot restore_items_mail
  next_page frmRTwo frmRfour
  shot restore_review
  next_page frmRfour frmRFinish
  shot restore_run 0.3
  act box 120 > "$work/said"
  shot restore_done
  act answer OK
  act wait-gone frmRFinish
}

schedule_pages() {
  act click 'FrmWelcome.lblQuicklinks(2)'
  act wait frmSchedule
  shot schedule
  next_page frmSchedule frmSchedTwo
  shot schedule_none
  act click frmSchedTwo.cmdBack
  act wait frmSchedule
  act set frmSchedule.txtSchedName "Nightly mail"
  act choose frmSchedule.cmbCommandLine "Automatic Backup"
  act set frmSchedule.DTPTime "09:07 AM"
  act check frmSchedule.ChkM 1
  act check frmSchedule.ChkF 1
  shot schedule_filled
  act click frmSchedule.Command6
  act box > "$work/said"
  shot schedule_created
  act answer OK
  next_page frmSchedule frmSchedTwo
  shot schedule_list
  act click FrmWelcome.CmdWC_Home
  act wait-gone frmSchedTwo
  shot home_next_schedule
}

other_pages() {
  act click 'FrmWelcome.lblQuicklinks(1)'
  act wait frmSettings
  shot settings
  act click 'FrmWelcome.lblSettings(1)'
  act wait frmStartUp
  shot startup
  act click FrmWelcome.CmdWC_Home
  act wait-gone frmStartUp
  act click FrmWelcome.CmdWC_ViewLog
  act wait frmLogs
  shot log
  act click FrmWelcome.CmdWC_Home
  act wait-gone frmLogs
  act click FrmWelcome.CmdAbout
  act wait frmAbout
  shot about
  act click frmAbout.cmdOK
  act wait-gone frmAbout
}

home_pages() {
  shot home 1
  act point FrmWelcome.cmdWC_Restore
  shot home_hover
  act hold FrmWelcome.CmdWC_ViewLog
  shot home_pressed
  act release
  sleep 0.5
  act click FrmWelcome.CmdWC_Home
  act wait-enabled FrmWelcome.cmdWC_TakeBackup
  act point 'FrmWelcome.lblQuicklinks(1)'
  shot home_link
  act point FrmWelcome.CmdWC_Close
  shot home_close
  act point FrmWelcome.PicMainImage
}

take_pictures() { # DPI
  local dpi=$1 fonts='HKLM\System\CurrentControlSet\Hardware Profiles\Current\Software\Fonts'
  pictures=$folder/$dpi
  mkdir -p "$pictures"
  lay_computer "$work/base" "$work/wine$dpi" "$work/machine" "$program"
  wine_use_prefix "$work/wine$dpi"
  local key
  for key in 'HKCU\Control Panel\Desktop' "$fonts"; do
    "$(wine_command)" reg add "$key" /v LogPixels /t REG_DWORD /d "$dpi" /f > /dev/null 2>&1
  done
  # Without a desktop of its own, Wine leaves it to a window manager to draw captions.
  "$(wine_command)" reg add 'HKCU\Software\Wine\Explorer' /v Desktop /d Default /f > /dev/null 2>&1
  "$(wine_command)" reg add 'HKCU\Software\Wine\Explorer\Desktops' /v Default /d "$screen" /f > /dev/null 2>&1
  wine_end
  act start "$(windows_path "$work/machine")" "$installed_program"
  act wait FrmWelcome
  act wait-enabled FrmWelcome.cmdWC_TakeBackup
  local group
  for group in $groups; do "${group}_pages"; done
  act shuts
  wine_end
}

virtual_display_start "${screen}x24"
# A desktop of the time, so that the window's corners are seen.
convert -size "$screen" xc:'#3a6ea5' "$work/desktop.png"
display -window root "$work/desktop.png" || true # it says no although it does it
"$console" machine sample "$work/machine" --like xp --user Anna > /dev/null
(wine_use_prefix "$work/base")
for dpi in ${QUORVALE_SHOTS_DPI:-96 120}; do take_pictures "$dpi"; done

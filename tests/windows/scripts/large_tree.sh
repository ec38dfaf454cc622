#!/usr/bin/env bash
# A mail store with 50,000 folders in the real tree of Quorvale.exe under Wine, worked by keys: how
# long the page takes to come, and each key until the page shows what it did, is printed.
#
#   tests/windows/large_tree.sh PROGRAMS LAY_MACHINE [FILES] [LIMIT]
#
# PROGRAMS is the build folder of the Windows programs, LAY_MACHINE the host program that makes the
# machine. FILES is 50000 where no other number is given. Fails if a time is above LIMIT, 10000
# milliseconds if not given: one or two seconds are usual, but the machine may have other work.
set -euo pipefail
cd "$(dirname "$0")/../../.."
. tools/wine.sh
. tests/windows/computer.sh
prepare_window_script large_tree "$@"
files=${3:-50000}
limit=${4:-10000}

too_long=0
report() { # WHAT MILLISECONDS
  echo "$1: $2 ms"
  if [ "$2" -gt "$limit" ]; then
    echo "FAILED: that is more than $limit ms"
    too_long=1
  fi
}
# Keys, and the item that the page tells of behind the last of them.
timed() { # WHAT ITEM KEY...
  local what=$1 item=$2 took
  shift 2
  took=$(act keys-until FrmTwo.frmfor "Item: $item" "$@")
  report "$what" "$took"
}
ticked() { # NODE 0|1
  local found end=$((SECONDS + 60))
  until found=$(act ticked FrmTwo.tvwMain "Outlook Express\\Email Messages\\Other Mail Folders$1") &&
    [ "$found" = "$2" ]; do
    if [ $SECONDS -ge $end ]; then
      echo "FAILED: the box of Other Mail Folders$1 is $found"
      exit 1
    fi
    sleep 0.2
  done
}

virtual_display_start 1024x768x24
(wine_use_prefix "$work/base")
"$lay_machine" "$work/machine" xp Anna
store=$(dirname "$(find "$work/machine" -iname inbox.dbx | head -1)")
(cd "$store" && seq -f '%05.0f.dbx' 1 "$files" | xargs touch)
lay_computer "$work/base" "$work/wine" "$work/machine" "$programs/src/app/Quorvale.exe"
wine_use_prefix "$work/wine"

act start "$(windows_path "$work/machine")" "$installed_program"
act wait FrmWelcome
act wait-enabled FrmWelcome.cmdWC_TakeBackup
act click FrmWelcome.cmdWC_TakeBackup
act wait frmOne
act set frmOne.txtBackupname "Large"
start=$(date +%s%3N)
act click frmOne.cmdNext
act wait FrmTwo 120
report "page with $files mail folders" $(($(date +%s%3N) - start))

act select FrmTwo.tvwMain 'Outlook Express'
act keys home right
act tick FrmTwo.tvwMain 'Outlook Express\Account Settings' # asked for with any mail
act keys home
timed "down to the messages" "Email Messages" down down down down
timed "open the messages" "Inbox.dbx" right down
timed "down to the folders" "Other Mail Folders" down down down down down
timed "open the node of $files" "00001.dbx" right down
timed "tick one of them" "00002.dbx" space down
ticked '\00001.dbx' 1
ticked '\00002.dbx' 0
ticked '' 1
timed "to the top" "Outlook Express" home
timed "back to the folders" "Other Mail Folders" down down down down down down down down down down
timed "untick all" "00001.dbx" space down
ticked '' 0
ticked '\00001.dbx' 0
timed "up again" "Other Mail Folders" up
timed "tick all" "00001.dbx" space down
ticked '\00001.dbx' 1
ticked '\00003.dbx' 1
timed "a page down" "000" pagedown pagedown pagedown pagedown
act select FrmTwo.tvwMain 'Outlook Express\Email Messages\Other Mail Folders'
timed "close the node" "Drafts.dbx" left up
timed "open it again" "00001.dbx" down right down
start=$(date +%s%3N)
act click FrmTwo.cmdNext
act wait frmThree 60
limit=$((limit * 6)) # every file has been asked for its size
report "to the next page" $(($(date +%s%3N) - start))
act shuts
exit $too_long

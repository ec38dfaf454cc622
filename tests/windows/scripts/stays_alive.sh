#!/usr/bin/env bash
# The window stays alive while one large file is backed up and restored: it is asked for a sign of
# life every 50 milliseconds, from the first look for items to the last message, and the longest
# time without one is printed. So is the time from a press on Stop to the question that follows.
#
#   tests/windows/stays_alive.sh PROGRAMS LAY_MACHINE [MEGABYTES] [LIMIT]
#
# PROGRAMS is the build folder of the Windows programs, LAY_MACHINE the host program that makes the
# machine. The large file has 300 megabytes where no other number is given. Fails if a time is above
# LIMIT, 1000 milliseconds if not given. A machine with other work gives any program its time late:
# what the program takes to answer while it does nothing is measured first, and four times of it are
# allowed on top.
set -euo pipefail
cd "$(dirname "$0")/../../.."
. tools/wine.sh
. tests/windows/computer.sh
prepare_window_script alive "$@"
megabytes=${3:-300}
limit=${4:-1000}
probe_seconds=1800

too_long=0
report() { # WHAT MILLISECONDS
  echo "$1: $2 ms"
  if [ "$2" -gt "$limit" ]; then
    echo "FAILED: that is more than $limit ms"
    too_long=1
  fi
}
# Looks from here on until a box stands; watched BOX then takes what the box has to say.
watch() {
  probe stays-alive 1700 > "$work/longest" &
  watcher=$!
}
watched() { # WHAT TEXT
  local said
  wait "$watcher" || { echo "FAILED: $1: $(cat "$work/longest")"; exit 1; }
  said=$(act box)
  if [ "$said" != "$2" ]; then
    echo "FAILED: $1: \"$said\""
    exit 1
  fi
  sed '$d;s/^/    /' "$work/longest"
  report "longest time without an answer, $1" "$(tail -1 "$work/longest")"
}
# From the job page to the run.
start_backup() { # NAME
  act click FrmWelcome.cmdWC_TakeBackup
  act wait frmOne
  act set frmOne.txtBackupname "$1"
  act click frmOne.cmdNext
  act wait FrmTwo 60
  act tick FrmTwo.tvwMain 'Outlook Express'
  act tick FrmTwo.tvwMain 'Other Files\My Documents'
  act click FrmTwo.cmdNext
  act wait frmThree
  act click frmThree.cmdNext
  act wait FrmBackupMedia
  act click FrmBackupMedia.cmdNext
  act wait-enabled frmfour.cmdNext 60
  act click frmfour.cmdNext
}

use_annas_computer
documents="$work/wine/drive_c/Documents and Settings/Anna/My Documents"
# Neither empty nor noise: it has to be compressed.
python3 - "$documents/large.bin" "$megabytes" << 'END'
import random
import sys
random.seed(7)
words = [bytes(random.choices(range(97, 123), k=random.randint(2, 9))) for _ in range(4000)]
block = b" ".join(random.choices(words, k=400000))[:1 << 20]
with open(sys.argv[1], "wb") as file:
    for i in range(int(sys.argv[2])):
        at = i * 7919 % len(block)
        file.write(block[at:] + block[:at])
END

act start "$(windows_path "$work/machine")" "$installed_program"
act wait FrmWelcome
act wait-enabled FrmWelcome.cmdWC_TakeBackup
idle=$(probe stays-alive 5 | sed -n 's/^\([0-9]*\)$/\1/p') || true
echo "longest time without an answer, doing nothing: $idle ms"
limit=$((limit + 4 * idle))
watch
start_backup "Large"
watched "backup of $megabytes MB" "Backup successfully completed"
act answer OK
act wait-gone frmFinish
act shut-explorer

act click FrmWelcome.cmdWC_Restore
act wait frmROne
watch
act click frmROne.cmdNext
act wait frmRTwo 600
act tick frmRTwo.tvwMain 'Outlook Express'
act tick frmRTwo.tvwMain 'Other Files'
act click frmRTwo.cmdNext
act wait frmRfour
act click frmRfour.cmdNext
watched "restore of $megabytes MB" "Backup successfully restored"
act answer OK
act wait-gone frmRFinish

start_backup "Stopped"
act wait-shown frmFinish.LblCompressProgress "Compression Progress" 60
act wait-shown frmFinish.lblCurrent "Current Progress: Compressing" 60
sleep 1
report "from Stop to its question" "$(act click-for-box frmFinish.Command2)"
act answer Yes
act box 60 > /dev/null
act answer OK
act shuts
exit $too_long

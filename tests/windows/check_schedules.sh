#!/usr/bin/env bash
# Schedules made in the program's real windows, as another program sees them: it looks into the same
# task scheduler through the same interface. The jobs' stored command lines are then started by
# hand, and the jobs deleted in the windows. Ends with one line: how many checks passed, how many
# failed.
#
#   tests/windows/check_schedules.sh PROGRAMS LAY_MACHINE
#
# PROGRAMS is the build folder of the Windows programs, LAY_MACHINE the host program that makes the
# starting machine. QUORVALE_PLAY_FOLDER takes the Wine prefix and the logs.
set -uo pipefail
cd "$(dirname "$0")/../.."
. tools/wine.sh

programs=$(realpath "${1:?the build folder of the Windows programs}")
lay_machine=$(realpath "${2:?the program that makes machines}")
work=${QUORVALE_PLAY_FOLDER:-$PWD/build/play}/schedules
driver=$programs/tests/windows/driver/scenario_driver.exe
probe=$programs/tests/windows/task_probe/task_probe.exe
installed='C:\Program Files\Quorvale\Quorvale.exe'
limit=${QUORVALE_PLAY_SECONDS:-240}

passed=0
failed=0
pass() {
  passed=$((passed + 1))
  echo "ok: $*"
}
fail() {
  failed=$((failed + 1))
  echo "FAILED: $*"
}
finish() {
  wine_end
  virtual_display_end
}

windows_path() { echo "Z:$(tr / '\\' <<< "$1")"; }

# look WORDS...: what the other program says.
look() {
  timeout -k 5 60 "$(wine_command)" "$probe" "$@" < /dev/null > "$work/look" 2>&1
  tr -d '\r' < "$work/look"
}

# has NAME LINE: the job has this field.
has() {
  local name=$1 line=$2 fields
  fields=$(look show "$name")
  if grep -qxF "$line" <<< "$fields"; then
    pass "job $name has $line"
  else
    fail "job $name has not \"$line\" but:"
    sed 's/^/    /' <<< "$fields"
  fi
}

# is_listed NAME / is_not_listed NAME
is_there() { look list | grep -qxF "$1.job"; }
is_listed() { if is_there "$1"; then pass "there is a job $1"; else fail "there is no job $1"; fi; }
is_not_listed() { if is_there "$1"; then fail "there is a job $1"; else pass "there is no job $1"; fi; }

# The driver leaves its own file in the program's place.
install_program() {
  wine_end
  wine_settle
  rm -rf "$WINEPREFIX/drive_c/Program Files/Quorvale"
  mkdir -p "$WINEPREFIX/drive_c/Program Files/Quorvale"
  cp "$programs/src/app/Quorvale.exe" "$WINEPREFIX/drive_c/Program Files/Quorvale/"
}

# play TITLE [PROGRAM] < SCENARIO: a person before the windows.
play() {
  local title=$1 program=${2:-$installed} scenario=$work/scenario.txt
  { echo "machine xp"; cat; } > "$scenario"
  install_program
  if timeout -k 5 "$limit" "$(wine_command)" "$driver" --program "$program" \
    --scenario "$(windows_path "$scenario")" --machine "$(windows_path "$work/machine")" \
    < /dev/null > "$work/play.log" 2>&1; then
    pass "$title"
  else
    fail "$title"
    tr -d '\r' < "$work/play.log" | tail -10 | sed 's/^/    /'
  fi
}

rm -rf "$work"
mkdir -p "$work"
if ! virtual_display_start || ! "$lay_machine" "$work/machine" xp Anna 1; then
  virtual_display_end
  echo "0 passed, 1 failed"
  exit 1
fi
trap finish EXIT
wine_use_prefix "$work/prefix"
cp -a "$work"/machine/drive_c/Doc* "$WINEPREFIX/drive_c/"
rm -f "$WINEPREFIX/dosdevices/d:"
cp -a "$work/machine/drive_d" "$WINEPREFIX/drive_d"
ln -s ../drive_d "$WINEPREFIX/dosdevices/d:"

# --- A job of another program stands there first ---
look add "Other work" "Of another program" > /dev/null
is_listed "Other work"
look show "Other work" > "$work/other.before"
job_file=$(find "$WINEPREFIX/drive_c/windows/" -iname 'Other work.job')
cp "$job_file" "$work/other.job"

# --- Made on the page ---
# Midnight must not come between the jobs.
until [ "$(date +%H%M)" -lt 2357 ]; do sleep 5; done
today=$(date +%Y-%m-%d)
play "schedules of all three types are made" << 'SCENARIO'
start
click FrmWelcome.lblQuicklinks(2)
set frmSchedule.txtSchedName Quick one
set frmSchedule.DTPTime 09:07 AM
check frmSchedule.ChkM
check frmSchedule.ChkF
answer OK Schedule created successfully
click frmSchedule.Command6
set frmSchedule.txtSchedName Custom one
set frmSchedule.DTPTime 10:45 PM
choose frmSchedule.cmbCommandLine Custom Backup
check frmSchedule.ChkU
answer OK Schedule created successfully
click frmSchedule.Command6
set frmSchedule.txtSchedName Automatic one
set frmSchedule.DTPTime 12:30 PM
choose frmSchedule.cmbCommandLine Automatic Backup
check frmSchedule.chkDaily
answer OK Schedule created successfully
click frmSchedule.Command6
click FrmWelcome.CmdWC_Home
expect-like FrmWelcome.LblNextSchedule ##/##/#### *:##:00 *M
SCENARIO

# --- Seen by the other program ---
word() { case $1 in Quick) echo qbackup ;; Custom) echo custom ;; *) echo auto ;; esac; }
for kind in Quick Custom Automatic; do
  name="$kind one"
  is_listed "$name"
  has "$name" "application = $installed"
  has "$name" "parameters = $(word $kind)"
  has "$name" "comment = Quorvale Scheduler"
  has "$name" "flags = 8193"
  has "$name" "triggers = 1"
  has "$name" "begin = $today"
  has "$name" "interval = 1"
  has "$name" "last = none"
done
has "Quick one" "start = 09:07"
has "Quick one" "type = 2"
has "Quick one" "days = 34"
has "Custom one" "start = 22:45"
has "Custom one" "type = 2"
has "Custom one" "days = 35"
has "Automatic one" "start = 12:30"
has "Automatic one" "type = 1"
# Wine takes the account and keeps it nowhere.
account=$(look show "Quick one" | grep '^account')
if [ "$account" = "account = Anna" ] || [ "$account" = "account: failed 80070002" ]; then
  pass "the account: $account"
else
  fail "the account is \"$account\""
fi
next=$(look show "Quick one" | sed -n 's/^next = \(.*\) 09:07$/\1/p')
case $(date -d "${next:-1970-01-01}" +%a) in
  Mon | Fri) pass "the next run of Monday and Friday is on $next" ;;
  *) fail "the next run of Monday and Friday is on \"$next\"" ;;
esac

# --- Their stored command lines, started by hand ---
stored() { look show "$1" | sed -n "s/^$2 = //p"; }
backups=$WINEPREFIX'/drive_c/Documents and Settings/Anna/Application Data/Tarnwick/Quorvale/Backup'
count_backups() { find "$backups" -name '*.obk' 2> /dev/null | wc -l; }

play "the quick job prepares a backup and waits" "$(stored "Quick one" application)" << SCENARIO
answer OK Ready for Scheduled Quick Backup
start $(stored "Quick one" parameters)
expect-form frmfour
expect-bold FrmWelcome.lblBackupOptions(4)
SCENARIO
if [ "$(count_backups)" = 0 ]; then pass "nothing is made yet"; else fail "it is made already"; fi
play "the custom job opens the wizard with nothing ticked" \
  "$(stored "Custom one" application)" << SCENARIO
answer OK Ready for Scheduled Custom Backup
start $(stored "Custom one" parameters)
expect-form frmOne
click frmOne.cmdNext
expect-no-tick FrmTwo.tvwMain Outlook Express
expect-no-tick FrmTwo.tvwMain Other Files
SCENARIO
play "the automatic job makes its backup with nobody there" \
  "$(stored "Automatic one" application)" << SCENARIO
answer OK Backup successfully completed
start $(stored "Automatic one" parameters)
expect-not FrmWelcome.LblLastBackup Never
SCENARIO
if [ "$(count_backups)" = 1 ]; then pass "the backup is there"; else fail "the backup is not there"; fi

# --- Listed and deleted on the page ---
play "the schedules are listed and deleted" << 'SCENARIO'
start
click FrmWelcome.lblQuicklinks(2)
click frmSchedule.cmdNext
expect-contains frmSchedTwo.ListView1 Quick one|
expect-contains frmSchedTwo.ListView1 Custom one|
expect-contains frmSchedTwo.ListView1 Automatic one|
choose frmSchedTwo.ListView1 Quick one
expect-contains frmSchedTwo.Text1 LastRunTime: Never
answer Yes The operation can't be undone. Are you sure you want to delete "Quick one"?
click frmSchedTwo.cmdDelete
choose frmSchedTwo.ListView1 Custom one
answer Yes The operation can't be undone. Are you sure you want to delete "Custom one"?
click frmSchedTwo.cmdDelete
answer Yes The operation can't be undone. Are you sure you want to delete "Automatic one"?
click frmSchedTwo.cmdDelete
expect frmSchedTwo.Text1 No Schedule yet Created
expect frmSchedTwo.ListView1
SCENARIO
for kind in Quick Custom Automatic; do is_not_listed "$kind one"; done

# --- The other program's job is as it was ---
is_listed "Other work"
if look show "Other work" | diff - "$work/other.before" && cmp -s "$job_file" "$work/other.job"; then
  pass "the other program's job is as it was"
else
  fail "the other program's job was touched"
fi

echo "$passed passed, $failed failed"
[ "$failed" = 0 ] && [ "$passed" -gt 0 ]

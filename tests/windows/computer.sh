# Shell functions for the scripts that work the real windows of Quorvale.exe under Wine: a computer
# with a machine folder's files, and single acts before the program's windows. Read behind
# tools/wine.sh.

# A prefix of its own, made by linking the prepared one; the files of the user are the machine's.
lay_computer() { # BASE PREFIX MACHINE PROGRAM
  local base=$1 prefix=$2 machine=$3 program=$4 folder name
  cp -al "$base" "$prefix"
  # What is written in place must not be shared.
  for name in system.reg user.reg userdef.reg; do
    cp --remove-destination "$base/$name" "$prefix/$name"
  done
  for folder in "$machine"/drive_c/*; do
    name=$(basename "$folder")
    # The system's own folder is there, in another spelling.
    case ${name,,} in
      windows) cp -a "$folder/." "$prefix/drive_c/windows/" ;;
      *) cp -a "$folder" "$prefix/drive_c/" ;;
    esac
  done
  rm -f "$prefix/dosdevices/d:"
  cp -a "$machine/drive_d" "$prefix/drive_d"
  ln -s ../drive_d "$prefix/dosdevices/d:"
  mkdir -p "$prefix/drive_c/Program Files/Quorvale"
  cp "$program" "$prefix/drive_c/Program Files/Quorvale/"
}
installed_program='C:\Program Files\Quorvale\Quorvale.exe'

windows_path() { echo "Z:$(tr / '\\' <<< "$1")"; }

# One act before the windows, by the program at $window_probe. Its lines go to this output; it
# fails, with a line that says why, if the act cannot be done.
probe() {
  local output status
  output=$(mktemp)
  timeout -k 5 "${probe_seconds:-180}" "$(wine_command)" "$window_probe" "$@" < /dev/null > "$output" 2> /dev/null
  status=$?
  tr -d '\r' < "$output"
  rm -f "$output"
  return $status
}
# An act without which the script cannot go on.
act() {
  local said
  if ! said=$(probe "$@"); then
    echo "$* ($said)" >&2
    return 1
  fi
  [ -z "$said" ] || echo "$said"
}

# The start of a script that works on one computer. PROGRAMS is the build folder of the Windows
# programs, LAY_MACHINE the host program that makes the machine. Sets $programs, $lay_machine,
# $window_probe and $work, a folder of its own in QUORVALE_PLAY_FOLDER. When the script ends, its
# display and its folder go; where it failed, a picture of the screen stays.
prepare_window_script() { # NAME PROGRAMS LAY_MACHINE
  programs=$(realpath "${2:?the build folder of the Windows programs}")
  lay_machine=$(realpath "${3:?the program that makes machines}")
  window_probe=$programs/tests/windows/driver/window_probe.exe
  work=$(mktemp -d "${QUORVALE_PLAY_FOLDER:-${TMPDIR:-/tmp}}/$1.XXXXXX")
  trap finish_window_script EXIT
}
finish_window_script() {
  local status=$?
  if [ $status != 0 ]; then
    import -silent -window root "$work.png" 2> /dev/null && echo "the screen: $work.png"
  fi
  [ -z "${WINEPREFIX-}" ] || wine_end
  virtual_display_end
  rm -rf "$work"
  exit $status
}
# Starts the display, and Anna's computer with Windows XP and the program, in $work/wine.
use_annas_computer() {
  virtual_display_start 1024x768x24
  (wine_use_prefix "$work/base")
  "$lay_machine" "$work/machine" xp Anna
  lay_computer "$work/base" "$work/wine" "$work/machine" "$programs/src/app/Quorvale.exe"
  wine_use_prefix "$work/wine"
}

# Shell functions that play scenario files against the real windows of Quorvale.exe; read behind
# tools/wine.sh and computer.sh. Wanted: $programs, the build folder of the Windows programs;
# $lay_machine and $compare_machines, the host programs; $work, the folder for prefixes and logs.

driver=$programs/tests/windows/driver/scenario_driver.exe
program=$programs/src/app/Quorvale.exe
limit=${QUORVALE_PLAY_SECONDS:-600}

# Scenarios that both bindings play, those that are whole round trips, those for real windows alone.
scenario_folders=(tests/scenarios tests/ftp_scenarios tests/round_trips tests/windows/scenarios)
scenario_file() { # NAME
  local folder
  for folder in "${scenario_folders[@]}"; do
    [ -f "$folder/$1.txt" ] && echo "$PWD/$folder/$1.txt" && return
  done
  return 1
}
scenario_names() { # FOLDER...
  local folder file
  for folder in "$@"; do
    for file in "$folder"/*.txt; do basename "$file" .txt; done
  done
}

# What a new prefix holds, made once: every play works on a copy. The devices of a computer that
# has none to speak of are not looked for at each start.
prepare_base() {
  [ -f "$work/base/prepared" ] && return
  rm -rf "$work/base"
  (
    wine_use_prefix "$work/base"
    local service
    for service in winebus winehid winexinput winusb PlugPlay; do
      "$(wine_command)" reg add "HKLM\\System\\CurrentControlSet\\Services\\$service" /v Start \
        /t REG_DWORD /d 4 /f > /dev/null 2>&1 < /dev/null
    done
    wine_settle
  )
  touch "$work/base/prepared"
}

# Plays a scenario, machine after machine; the last of them is $folder/prefix<$number>. FORMER is a
# folder with the drives of a computer that was before the first one. It has a display of its own:
# two plays on one display would pull each other's pointer away.
play() { # NAME [FORMER]
  local name=$1 former=${2:-} file first=0 status=1 like user size
  local virtual_display_pid="" DISPLAY=${DISPLAY:-}
  file=$(scenario_file "$name") || return 1
  folder=$work/$name
  number=1
  rm -rf "$folder"
  mkdir -p "$folder"
  output=$folder/output
  size=$(sed -n 's/^screen \([0-9x]*\)$/\1/p' "$file")
  virtual_display_start "${size:-1280x1024}x24" || return 1
  while :; do
    # The machine's line, from the one where this part of the scenario starts.
    read -r like user < <(sed -n "$((first > 0 ? first : 1)),\$s/^machine //p" "$file" | head -1)
    user=${user:-Anna}
    prefix=$folder/prefix$number
    "$lay_machine" "$folder/machine$number" "$like" "$user" "$number" || break
    lay_computer "$work/base" "$prefix" "$folder/machine$number" "$program"
    local -a words=(--program "$installed_program"
      --scenario "$(windows_path "$file")" --machine "$(windows_path "$folder/machine$number")"
      --first "$first")
    [ -n "$former" ] && words+=(--former "$(windows_path "$former")")
    (
      wine_use_prefix "$prefix"
      timeout -k 5 "$limit" "$(wine_command)" "$driver" "${words[@]}" < /dev/null
    ) > "$output" 2>&1
    status=$?
    [ $status = 10 ] || break
    WINEPREFIX=$prefix wineserver -k > /dev/null 2>&1
    first=$(tr -d '\r' < "$output" | tail -1)
    # The former machine's drives, as the driver looks for them.
    former=$prefix
    number=$((number + 1))
  done
  [ $status = 124 ] && echo "it was not at its end after $limit seconds" >> "$output"
  if [ $status = 0 ] && [[ $file == */round_trips/* ]]; then
    read_back "$prefix" "$folder/machine$number" "$folder/after" &&
      "$lay_machine" "$folder/before" "$like" "$user" "$number" &&
      "$compare_machines" "$folder/before" "$like" "$user" "$number" \
        "$folder/after" "$like" "$user" "$number" wine > "$output" 2>&1
    status=$?
  fi
  WINEPREFIX=$prefix wineserver -k > /dev/null 2>&1
  virtual_display_end
  return $status
}

# A prefix after a play as a machine folder: its drives, and its registry by the registry editor.
read_back() { # PREFIX MACHINE FOLDER
  local prefix=$1 machine=$2 after=$3 root user
  mkdir -p "$after/registry"
  cp "$machine/machine.ini" "$after/"
  # Wine knows its user by the name of whoever runs it, and the address book bears the user's name.
  user=$(sed -n 's/^user = //p' "$machine/machine.ini")
  find "$prefix/drive_c" -path '*/Address Book/*' -name "$(id -un).wab" -execdir mv {} "$user.wab" \;
  ln -s "$prefix/drive_c" "$after/drive_c"
  ln -s "$prefix/drive_d" "$after/drive_d"
  mkdir -p "$after/drive_e"
  for root in HKEY_CURRENT_USER "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Internet Explorer"; do
    (
      wine_use_prefix "$prefix"
      timeout -k 5 300 "$(wine_command)" regedit /e \
        "$(windows_path "$after/registry/${root%%\\*}.reg")" "$root" < /dev/null > /dev/null 2>&1
    ) || return 1
  done
}

# The outcome of one scenario, in a file: two are played at a time.
play_into_file() {
  local name=$1 start=$SECONDS status told folder number prefix output
  play "$name"
  status=$?
  if [ $status = 0 ]; then
    told=$(sed -n 's/^the same: //p' "$output" | tr -d '\r')
    echo "ok: $name ($((SECONDS - start)) s${told:+; $told})"
    rm -rf "${work:?}/$name"
  else
    echo "FAILED: $name (status $status, $((SECONDS - start)) s)"
    tr -d '\r' < "$work/$name/output" | tail -20 | sed 's/^/    /'
  fi > "$work/$name.result"
}

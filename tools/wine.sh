# Shell functions for running Windows programs under Wine; read by run, test and shots.sh.

wine_tools_root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# "i686", or "x86_64" where setup.sh found no way to a 32-bit Wine.
windows_target() { cat "$wine_tools_root/build/cache/windows-target" 2> /dev/null || echo i686; }
windows_preset() { [ "$(windows_target)" = i686 ] && echo windows || echo windows64; }
wine_command() { command -v wine || command -v wine64; }

# All Wine programs that follow use this folder as their computer. It is made where it is missing.
wine_use_prefix() {
  # Where a folder of the computer's user is missing, Wine makes a link to that of whoever runs
  # this: it is told of no home, so that nothing there is read or written.
  export XDG_CACHE_HOME=${XDG_CACHE_HOME:-$HOME/.cache} HOME=$1/no-home
  # Nobody answers a debugger: a program of Wine that crashes is to end, not to wait for one.
  export WINEPREFIX=$1 WINEDEBUG=${WINEDEBUG:--all} WINEDLLOVERRIDES="mscoree=;mshtml=;winemenubuilder.exe=;winedbg.exe="
  [ "$(windows_target)" = i686 ] && export WINEARCH=win32 || export WINEARCH=win64
  if [ ! -f "$WINEPREFIX/system.reg" ]; then
    mkdir -p "$(dirname "$WINEPREFIX")"
    "$(wine_command)" wineboot --init > /dev/null 2>&1
    wine_settle
    # A new computer's documents and desktop are links into the home of who runs this: folders of
    # its own take their place, so that nothing there is read or written.
    local link
    find "$WINEPREFIX/drive_c/users" -maxdepth 2 -type l | while read -r link; do
      rm "$link"
      mkdir "$link"
    done
  fi
}

# Waits until every program of the prefix has ended and its registry is written.
wine_settle() { timeout 60 wineserver -w > /dev/null 2>&1 || true; }
# Ends every program of the prefix.
wine_end() { wineserver -k > /dev/null 2>&1 || true; }

# Starts a display of its own and sets DISPLAY; virtual_display_end ends it.
virtual_display_pid=
virtual_display_start() {
  local size=${1:-1280x1024x24} number_file
  number_file=$(mktemp)
  Xvfb -displayfd 3 -screen 0 "$size" -nolisten tcp -noreset 3> "$number_file" > /dev/null 2>&1 &
  virtual_display_pid=$!
  local tries=0
  while [ ! -s "$number_file" ] && [ $tries -lt 600 ]; do
    kill -0 "$virtual_display_pid" 2> /dev/null || break
    sleep 0.1
    tries=$((tries + 1))
  done
  DISPLAY=:$(tr -d '[:space:]' < "$number_file")
  rm -f "$number_file"
  [ "$DISPLAY" != : ] || return 1
  export DISPLAY
}
virtual_display_end() {
  [ -n "$virtual_display_pid" ] && kill "$virtual_display_pid" 2> /dev/null
  virtual_display_pid=
}

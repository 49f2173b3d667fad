# shellcheck shell=bash
# A Windows to run on: a Wine prefix and a display of the build tree's own, ended with the script. Sourced by the scripts.

use_prefix() {
  export WINEPREFIX=$1
  # Stands where the prefix is set up and the last script that used it ran to its end, so that it left nothing behind.
  wine_is_clean=$WINEPREFIX/tarnwick-is-clean
}
use_prefix "${TARNWICK_WINEPREFIX:-$PWD/build/wine}"
export WINEDEBUG=${WINEDEBUG:--all}
# Nobody is there to answer whether Mono and Gecko should be installed, and menus belong to no desktop here.
export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
export WINEARCH=win64
# Where the texts of this machine aren't UTF-8, Wine can give no file a name beyond ASCII.
if [ "$(locale charmap 2>/dev/null)" != UTF-8 ]; then export LC_ALL=C.UTF-8; fi
# The prefix is ours alone, so tests and the desktop builder may write its registry and its drive C:.
export TARNWICK_THROWAWAY_MACHINE=1

display_pid=

# Wine first: its processes complain aloud about a display that goes away under them.
end_wine() {
  local status=$?
  wineserver -k >/dev/null 2>&1 || true
  wineserver -w >/dev/null 2>&1 || true
  if [ -n "$display_pid" ]; then kill "$display_pid" 2>/dev/null || true; fi
  if [ "$status" -le 1 ] && [ -d "$WINEPREFIX/drive_c/windows" ]; then wine --version >"$wine_is_clean"; fi
}

# The foreground window needs a display.
start_display() {
  local name number
  name=build/display-$(basename "$WINEPREFIX")
  number=$name.number
  : >"$number"
  Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$number" 2>"$name.log" &
  display_pid=$!
  for _ in $(seq 100); do
    [ -s "$number" ] && break
    sleep 0.1
  done
  [ -s "$number" ] || fail "no virtual display: see $name.log"
  DISPLAY=:$(tr -d '[:space:]' <"$number")
  export DISPLAY
}

# Starts from an empty Windows, so that nothing of an earlier run is taken for a result of this one.
fresh_wine() {
  say "Setting up Wine"
  mkdir -p build
  wineserver -k >/dev/null 2>&1 || true
  rm -rf "$WINEPREFIX"
  trap end_wine EXIT
  start_display
  mkdir -p "$WINEPREFIX"
  # The server stays between programs, so that each needn't start it anew.
  local log
  log=build/$(basename "$WINEPREFIX").log
  if ! { wineserver -p && wineboot -i && winecfg -v win10; } >"$log" 2>&1 ||
    [ ! -d "$WINEPREFIX/drive_c/windows" ]; then
    cat "$log" >&2
    fail "Wine could not set up its prefix $WINEPREFIX"
  fi
}

# The Windows that an earlier run left, if it is clean and of this Wine; otherwise a fresh one. For trying a few tests over
# and over: a whole run starts from an empty Windows.
warm_wine() {
  if [ "$(cat "$wine_is_clean" 2>/dev/null)" != "$(wine --version)" ]; then
    fresh_wine
    return
  fi
  rm "$wine_is_clean"
  trap end_wine EXIT
  start_display
  wineserver -p
}

# Wine links some of a user's folders to those of this machine. What is built in a prefix that keeps apart from it stays
# there.
cut_links_out_of_wine() {
  local link
  find "$WINEPREFIX/drive_c" -type l -print0 | while IFS= read -r -d '' link; do
    rm "$link"
    mkdir "$link"
  done
}

# The drive that shows the root of this machine.
wine_root=z:

# as_windows_path PATH: an absolute path of this machine's, for a program under Wine.
as_windows_path() { printf '%s' "${wine_root^}${1//\//\\}"; }

# The root of this machine moves to a letter that is none of these.
move_wine_root() {
  local free
  for free in y x w v u t s r q p o n m l k j i h g f e d; do
    if [[ $1 != *$free* ]]; then break; fi
  done
  ln -sfn / "$WINEPREFIX/dosdevices/$free:"
  wine_root=$free:
}

# give_wine_drives LETTERS: makes these drives, each a folder in the prefix. Wine is told of its drives when it starts, so
# it starts anew.
give_wine_drives() {
  local letters=${1//c/} letter place
  [ -n "$letters" ] || return 0
  if [[ $letters == *z* ]]; then move_wine_root "$letters"; fi
  for letter in $(fold -w1 <<<"$letters"); do
    mkdir -p "$WINEPREFIX/drive_$letter"
    place=$WINEPREFIX/dosdevices/$letter:
    ln -sfn "../drive_$letter" "$place"
  done
  for letter in $(fold -w1 <<<"$letters"); do
    wine reg add 'HKLM\Software\Wine\Drives' /v "$letter:" /d hd /f >/dev/null
  done
  wineserver -k || true
  wineserver -w || true
  wineserver -p
}

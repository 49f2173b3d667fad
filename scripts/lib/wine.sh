# shellcheck shell=bash
# A Windows to run on: a Wine prefix of the build tree's own, made once and thrown away with it. Sourced by the scripts.

export WINEPREFIX=${TARNWICK_WINEPREFIX:-$PWD/build/wine}
export WINEDEBUG=${WINEDEBUG:--all}
export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
# Wine 8 and later ask whether to install Mono and Gecko; nobody is there to answer.
export WINEARCH=win64
# The prefix is ours alone, so tests and the desktop builder may write its registry and its drive C:.
export TARNWICK_THROWAWAY_MACHINE=1

end_wine() { wineserver -k >/dev/null 2>&1 || true; }

# Starts from an empty Windows, so that nothing of an earlier run is taken for a result of this one.
fresh_wine() {
  end_wine
  rm -rf "$WINEPREFIX"
  mkdir -p "$(dirname "$WINEPREFIX")"
  say "Setting up Wine"
  if ! { wineboot -i && winecfg -v win10 && wineserver -p; } >build/wine.log 2>&1 || [ ! -d "$WINEPREFIX/drive_c/windows" ]; then
    cat build/wine.log >&2
    fail "Wine could not set up its prefix $WINEPREFIX"
  fi
  trap end_wine EXIT
}

# Under a display of its own: the foreground window needs one.
run_wine() { xvfb-run -a wine "$@"; }

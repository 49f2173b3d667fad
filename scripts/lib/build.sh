# shellcheck shell=bash
# Configuring and building a preset. Sourced by the scripts, from the top of the repository.

# build_preset PRESET [TARGET...]
build_preset() {
  local preset=$1 log
  shift
  say "Building $preset"
  mkdir -p build
  log=build/$preset.log
  if ! { cmake --preset "$preset" && cmake --build --preset "$preset" ${1:+--target "$@"}; } >"$log" 2>&1; then
    tail -n 60 "$log" >&2
    fail "the $preset build failed; the whole output is in $log"
  fi
}

# shellcheck shell=bash
# Configuring and building a preset. Sourced by the scripts, from the top of the repository.

# configure_preset PRESET: where that has not been done yet, or the presets or toolchains changed. CMake sees by itself to
# everything else.
configure_preset() {
  local log=build/$1.log file=build/$1/build.ninja
  mkdir -p build
  if [ -f "$file" ] && [ -z "$(find CMakePresets.json cmake -newer "$file")" ]; then return; fi
  one_at_a_time "$1" cmake --preset "$1" >"$log" 2>&1 || build_failed "$1" "$log"
  touch "$file"
}

# one_at_a_time PRESET COMMAND...: two that work in one preset's folder would spoil each other's files.
one_at_a_time() { flock "build/$1.lock" "${@:2}"; }

build_failed() {
  tail -n 60 "$2" >&2
  fail "the $1 build failed; the whole output is in $2"
}

# build_preset PRESET [TARGET...]
build_preset() {
  local preset=$1 log=build/$1.log started=$SECONDS
  shift
  say "Building $preset${1:+: $*}"
  configure_preset "$preset"
  one_at_a_time "$preset" cmake --build --preset "$preset" ${1:+--target "$@"} >"$log" 2>&1 ||
    build_failed "$preset" "$log"
  printf '   %-28s %-42s %4d s\n' "$preset" built "$((SECONDS - started))"
}

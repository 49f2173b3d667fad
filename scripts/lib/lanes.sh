# shellcheck shell=bash
# A whole run keeps both cores busy: one process builds all that will be wanted, in the order in which it will be, while
# lanes of tests run beside it, each on a Windows of its own. Sourced by scripts/test.

# The file that tells of a finished build.
build_mark() { printf 'build/test-logs/%s.built' "$1"; }

builder_pid=

# start_builder NAME...: runs build_NAME of each, one after the other, in the background.
start_builder() {
  local name
  for name in "$@"; do rm -f "$(build_mark "$name")"; done
  {
    for name in "$@"; do
      "build_$name"
      : >"$(build_mark "$name")"
    done
  } &
  builder_pid=$!
}

# need_build NAME: waits for it, or makes it where no builder runs.
need_build() {
  if [ -z "$builder_pid" ]; then
    "build_$1"
    return
  fi
  until [ -e "$(build_mark "$1")" ]; do
    kill -0 "$builder_pid" 2>/dev/null || [ -e "$(build_mark "$1")" ] || fail "the build of $1 has failed"
    sleep 0.5
  done
}

declare -A lanes=()

# start_lane NAME PART...: these parts, one after the other, in the background and on a Windows of their own.
start_lane() {
  local name=$1
  shift
  rm -f "build/test-logs/$name.counts"
  (
    use_prefix "$PWD/build/wine-$name"
    run_parts "$@"
    printf '%d %d %d\n' "$passed" "$failed" "$skipped" >"build/test-logs/$name.counts"
  ) &
  lanes[$name]=$!
}

# Waits for all lanes and the builder, and adds up what they counted. What ended early has failed.
finish_lanes() {
  local name more_passed more_failed more_skipped
  for name in "${!lanes[@]}"; do
    wait "${lanes[$name]}" || true
    read -r more_passed more_failed more_skipped <"build/test-logs/$name.counts" 2>/dev/null ||
      { printf '   the lane %s ended early\n' "$name" && more_passed=0 more_failed=1 more_skipped=0; }
    passed=$((passed + more_passed))
    failed=$((failed + more_failed))
    skipped=$((skipped + more_skipped))
  done
  wait "$builder_pid" || failed=$((failed + 1))
}

# Background processes of a script don't hear the interrupt that ends it.
stop_lanes() {
  local pids
  pids=$(jobs -p)
  # shellcheck disable=SC2086
  [ -z "$pids" ] || kill $pids 2>/dev/null || true
}

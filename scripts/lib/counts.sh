# shellcheck shell=bash
# Running checks and test programs, counting what passed, and telling how long each took. Sourced by scripts/test. Every
# function takes a name, and leaves the whole output in build/test-logs/NAME.log.

passed=0
failed=0
skipped=0

# step_done NAME RESULT STARTED
step_done() { printf '   %-28s %-42s %4d s\n' "$1" "$2" "$((SECONDS - $3))"; }

# run_check NAME COMMAND...: one pass or one failure for the whole command.
run_check() {
  local name=$1 started=$SECONDS
  shift
  if "$@" >"build/test-logs/$name.log" 2>&1; then
    passed=$((passed + 1))
    step_done "$name" ok "$started"
  else
    failed=$((failed + 1))
    tail -n 40 "build/test-logs/$name.log"
    step_done "$name" FAILED "$started"
  fi
}

# googletest_count LOG RESULT: the number in the summary line of one result.
googletest_count() { sed -n "s/^\[ *$2 *\] \([0-9]*\) test.*/\1/p" "$1" | tail -n 1 | grep . || echo 0; }

# count_googletest NAME LOG STATUS: adds up one program's own counts. A program without GoogleTest's closing line
# has failed, whatever its exit code: a stack overflow can end a Windows program with 0.
count_googletest() {
  local bad
  bad=$(googletest_count "$2" FAILED)
  passed=$((passed + $(googletest_count "$2" PASSED)))
  skipped=$((skipped + $(googletest_count "$2" SKIPPED)))
  if [ "$3" -ne 0 ] || ! grep -q '^\[==========\].*ran\.' "$2"; then
    [ "$bad" -gt 0 ] || bad=1
    grep -E '^\[  FAILED|Failure|ERROR|error' "$2" | head -n 60 || true
    tail -n 40 "$2"
    printf '   %s FAILED (exit code %s; the whole output is in %s)\n' "$1" "$3" "$2"
  fi
  failed=$((failed + bad))
}

# run_googletest NAME COMMAND...
run_googletest() {
  local name=$1 log=build/test-logs/$1.log started=$SECONDS status=0
  shift
  "$@" >"$log" 2>&1 || status=$?
  count_googletest "$name" "$log" "$status"
  step_done "$name" "$(googletest_count "$log" PASSED) passed, $(googletest_count "$log" FAILED) failed" "$started"
}

# run_googletest_halves NAME COMMAND...: the same in two processes at once, for programs whose tests share nothing.
run_googletest_halves() {
  local name=$1 log=build/test-logs/$1 started=$SECONDS first status=0
  shift
  GTEST_TOTAL_SHARDS=2 GTEST_SHARD_INDEX=0 "$@" >"$log-1.log" 2>&1 &
  first=$!
  GTEST_TOTAL_SHARDS=2 GTEST_SHARD_INDEX=1 "$@" >"$log-2.log" 2>&1 || status=$?
  count_googletest "$name" "$log-2.log" "$status"
  status=0
  wait "$first" || status=$?
  count_googletest "$name" "$log-1.log" "$status"
  step_done "$name" "$(googletest_count "$log-1.log" PASSED) and $(googletest_count "$log-2.log" PASSED) passed" "$started"
}

# run_unittest NAME COMMAND...: the counts of Python's unittest.
run_unittest() {
  local name=$1 log=build/test-logs/$1.log started=$SECONDS status=0 ran bad left
  shift
  "$@" >"$log" 2>&1 || status=$?
  ran=$(sed -n 's/^Ran \([0-9]*\) test.*/\1/p' "$log" | tail -n 1 | grep . || echo 0)
  bad=$(unittest_count 'failures|errors' "$log")
  left=$(unittest_count 'skipped' "$log")
  if [ "$bad" -eq 0 ] && { [ "$status" -ne 0 ] || [ "$ran" -eq 0 ]; }; then bad=1; fi
  failed=$((failed + bad))
  skipped=$((skipped + left))
  passed=$((passed + (ran > bad + left ? ran - bad - left : 0)))
  if [ "$bad" -gt 0 ]; then tail -n 60 "$log"; fi
  step_done "$name" "$((ran > bad + left ? ran - bad - left : 0)) of $ran passed" "$started"
}

# unittest_count WORDS LOG: the sum behind these words in the closing line, such as "FAILED (failures=1, errors=2)".
unittest_count() {
  { sed -nE 's/^(OK|FAILED) \((.*)\)/\2/p' "$2" | grep -oE "\b($1)=[0-9]+" | grep -oE '[0-9]+' || true; } |
    awk '{ sum += $1 } END { print sum + 0 }'
}

# Ends with the counts, alone on the last line. True if all is well.
report_counts() {
  printf '== Took %d s\n' "$SECONDS"
  printf '%d passed, %d failed, %d skipped\n' "$passed" "$failed" "$skipped"
  [ "$failed" -eq 0 ] && [ "$passed" -gt 0 ]
}

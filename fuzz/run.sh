#!/usr/bin/env bash
# Builds the fuzz preset and runs each libFuzzer target for N seconds (argument, default 60) from
# a copy of its seed corpus in fuzz/corpus/<target>/, printing executions and corpus size.
# Exits non-zero when a target crashes; the crashing input is kept and its path printed.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:-60}
case "$seconds" in
  -h|--help) sed -n '2,4p' "$0" | sed 's/^# \{0,1\}//'; exit 0 ;;
  ''|*[!0-9]*) echo "fuzz/run.sh: the duration must be a whole number of seconds, not '$seconds'" >&2; exit 2 ;;
esac

targets=(fuzz_installation_performance_parameters fuzz_debug_and_test_parameters)

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz --target "${targets[@]}" -j "$(nproc)"

work=$(mktemp -d "${TMPDIR:-/tmp}/orvo-fuzz.XXXXXX")
status=0
for target in "${targets[@]}"; do
  corpus="$work/$target/corpus"
  mkdir -p "$corpus"
  cp fuzz/corpus/"$target"/* "$corpus"/
  log="$work/$target/fuzz.log"
  if build/fuzz/bin/"$target" -max_total_time="$seconds" -timeout=10 -print_final_stats=1 \
      -dict=fuzz/parameters.dict -artifact_prefix="$work/$target/" "$corpus" >"$log" 2>&1; then
    result=ok
  else
    result=CRASH
    status=1
  fi
  executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -n 1)
  echo "$target: $result, ${executions:-?} executions, corpus $(find "$corpus" -type f | wc -l) files"
  if [ "$result" = CRASH ]; then
    tail -n 40 "$log"
    echo "$target: crashing input and log kept in $work/$target/"
  fi
done

[ "$status" -eq 0 ] && rm -rf "$work"
exit "$status"

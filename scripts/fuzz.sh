#!/usr/bin/env bash
# Builds the libFuzzer targets of fuzz/ in build-fuzz/ (clang, AddressSanitizer,
# UBSan) and runs each for a while from a copy of its seed corpus, so the
# repository's corpus never grows here. Any crash, sanitizer report, leak,
# slow input or broken invariant fails; one summary line per target.
#   scripts/fuzz.sh [seconds per target]     (default 60, or FUZZ_SECONDS)
# A failing input is kept in build-fuzz/findings/<target>/; rerun it with
#   build-fuzz/fuzz/<target> <file>
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"

seconds=${1:-${FUZZ_SECONDS:-60}}
targets=(fuzz_clusternoticetext fuzz_noticeremindtext fuzz_lessonnoticetext fuzz_scenario)

# libFuzzer's runtime comes with clang's runtime package on Debian 12.
bash scripts/setup-deps.sh clang libclang-rt-14-dev

cmake -S . -B build-fuzz -DCMAKE_CXX_COMPILER=clang++ -DVYR_BUILD_FUZZ=ON -DVYR_BUILD_TESTS=OFF \
  -DVYR_BUILD_DEMO=OFF -DVYR_BUILD_BENCH=OFF -DVYR_INSTALL=OFF -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build-fuzz -j"$(nproc)" --target vyr_fuzz_targets

export QT_QPA_PLATFORM=offscreen LANG=C.UTF-8 TZ=UTC
export UBSAN_OPTIONS="halt_on_error=1:print_stacktrace=1"
export LSAN_OPTIONS="suppressions=$root/scripts/lsan.supp:print_suppressions=0"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
findings=build-fuzz/findings
rm -rf "$findings"

# Qt 5.15's JSON parser leaks part of the tree it built when it stops at some
# syntax errors; unwinding through Qt to suppress just that costs 20 times the
# speed, so the scenario target runs without leak checks (the reader itself
# holds only Qt values).
leak_checks() {
  if [ "$1" = fuzz_scenario ]; then echo 0; else echo 1; fi
}

failed=()
summary=()
for target in "${targets[@]}"; do
  mkdir -p "$work/$target/corpus" "$work/$target/found"
  cp fuzz/corpus/"$target"/* "$work/$target/corpus/"
  log=$work/$target/log
  status=ok
  leaks=$(leak_checks "$target")
  if ! ASAN_OPTIONS="abort_on_error=1:detect_leaks=$leaks" build-fuzz/fuzz/"$target" -detect_leaks="$leaks" \
       -max_total_time="$seconds" -timeout=25 -rss_limit_mb=4096 \
       -print_final_stats=1 -artifact_prefix="$work/$target/found/" "$work/$target/corpus" >"$log" 2>&1; then
    status=FAILED
    failed+=("$target")
    mkdir -p "$findings/$target"
    cp "$work/$target"/found/* "$findings/$target/" 2>/dev/null || true
    cp "$log" "$findings/$target/log"
    echo "---- $target: last lines of its log ----"
    tail -n 60 "$log"
  fi
  stat_of() { sed -n "s/^stat::$1: *//p" "$log" | tail -n1; }
  summary+=("$(printf 'fuzz: %-24s %-6s %8s runs  %6s exec/s  %4s new units  %5s MB peak' \
    "$target" "$status" "$(stat_of number_of_executed_units)" "$(stat_of average_exec_per_sec)" \
    "$(stat_of new_units_added)" "$(stat_of peak_rss_mb)")")
done

printf '%s\n' "${summary[@]}"
if [ ${#failed[@]} -gt 0 ]; then
  echo "fuzz: FAILED: ${failed[*]} (inputs and logs in $findings/)"
  exit 1
fi
echo "fuzz: all ${#targets[@]} targets ran ${seconds}s each without a report"

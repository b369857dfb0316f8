#!/usr/bin/env bash
# Builds the benchmarks in a Release tree (build-rel/) and runs every one of
# them offscreen, each repeated, keeping the medians. The output of each
# program goes to build-rel/bench-results/<program>.txt; the "ratio" and
# "growth" lines of all of them are printed at the end, with the machine.
#   scripts/bench.sh                      every benchmark, 3 repetitions
#   scripts/bench.sh bench_popnotice ...  only the programs named
# REPETITIONS=5 repeats more; BENCH_ARGS="--benchmark_filter=..." is handed to
# every program. The programs' own settings pass through the
# environment (VYR_BENCH_CYCLES=0 leaves the pop-ups' 10,000-cycle memory runs out).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"

build=build-rel
repetitions=${REPETITIONS:-3}
all=(bench_notice bench_noticelistwidget bench_burst bench_friendrequestmodel bench_friendrequestrows
     bench_friendrequestpage bench_popnotice bench_hostile)
programs=("$@")
[ ${#programs[@]} -gt 0 ] || programs=("${all[@]}")

launcher=()
command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DVYR_BUILD_BENCH=ON -DVYR_BUILD_TESTS=OFF \
      -DVYR_BUILD_DEMO=OFF "${launcher[@]}" >/dev/null
cmake --build "$build" -j"$(nproc)" --target "${programs[@]}"

export QT_QPA_PLATFORM=offscreen
results="$build/bench-results"
mkdir -p "$results"
for program in "${programs[@]}"; do
  echo "== $program"
  args=(--benchmark_repetitions="$repetitions" --benchmark_report_aggregates_only=true --benchmark_color=false)
  # The hostile cases set their own repetitions, one pass each.
  [ "$program" = bench_hostile ] && args=(--benchmark_color=false)
  # shellcheck disable=SC2086
  "$build/bench/$program" "${args[@]}" ${BENCH_ARGS:-} | tee "$results/$program.txt"
done

echo
echo "== Machine: $(lscpu | sed -n 's/^Model name: *//p'), $(nproc) cores; Qt $(qmake -query QT_VERSION 2>/dev/null \
  || echo '?'); offscreen; Release; $repetitions repetitions, medians"
for program in "${programs[@]}"; do
  grep -E '^(ratio|growth) ' "$results/$program.txt" | sed "s/^/$program: /" || true
done

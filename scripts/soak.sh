#!/usr/bin/env bash
# The random-API soak (tests/security/tst_soak) for a long run under
# AddressSanitizer and UBSan, from the sanitizer tree that
# `scripts/test.sh --sanitize` builds in build-asan/. Any report fails.
#   scripts/soak.sh [seconds]        (default 120, or VYR_SOAK_SECONDS)
# It prints its seed first; VYR_TEST_SEED=<seed> repeats a run.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"

seconds=${1:-${VYR_SOAK_SECONDS:-120}}
build=build-asan
if [ ! -f "$build/CMakeCache.txt" ]; then
  bash scripts/setup-deps.sh
  cmake -S . -B "$build" -DVYR_BUILD_TESTS=ON -DVYR_BUILD_DEMO=ON -DVYR_SANITIZE=ON -DVYR_BUILD_BENCH=OFF \
    -DCMAKE_BUILD_TYPE=Debug >/dev/null
fi
cmake --build "$build" -j"$(nproc)" --target tst_soak

export QT_QPA_PLATFORM=offscreen LANG=C.UTF-8 TZ=UTC
export ASAN_OPTIONS="halt_on_error=1:abort_on_error=1:detect_leaks=1:exitcode=23"
export UBSAN_OPTIONS="halt_on_error=1:print_stacktrace=1"
export LSAN_OPTIONS="suppressions=$root/scripts/lsan.supp:print_suppressions=0"
export VYR_SOAK_SECONDS=$seconds
start=$(date +%s)
"$build"/tests/security/tst_soak
echo "soak: ${seconds}s under AddressSanitizer and UBSan, no report ($(( $(date +%s) - start ))s in all)"

#!/usr/bin/env bash
# Sets up, builds and runs the whole test suite; ends with ctest's summary.
#   scripts/test.sh              normal build in build/
#   scripts/test.sh --sanitize   AddressSanitizer + UBSan build in build-asan/
#   scripts/test.sh --tsan       ThreadSanitizer build in build-tsan/: the threaded
#                                tests only (friend-request tree and notice engine)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"

bash scripts/setup-deps.sh

build=build
# The benchmarks are built (not run) too, so that they keep compiling.
extra=(-DVYR_BUILD_BENCH=ON)
targets=()
tests=()
if [ "${1:-}" = "--sanitize" ]; then
  build=build-asan
  extra=(-DVYR_SANITIZE=ON -DVYR_BUILD_BENCH=OFF -DCMAKE_BUILD_TYPE=Debug)
  export ASAN_OPTIONS="halt_on_error=1:abort_on_error=1:detect_leaks=1:exitcode=23"
  export UBSAN_OPTIONS="halt_on_error=1:print_stacktrace=1"
  export LSAN_OPTIONS="suppressions=$root/scripts/lsan.supp:print_suppressions=0"
fi
if [ "${1:-}" = "--tsan" ]; then
  build=build-tsan
  extra=(-DVYR_TSAN=ON -DCMAKE_BUILD_TYPE=Debug -DVYR_BUILD_DEMO=OFF -DVYR_BUILD_BENCH=OFF)
  targets=(--target tst_friendrequestmodel tst_friendrequestpaging tst_friendrequestdays tst_friendrequestload
           tst_vyrnoticeengine tst_vyrchatengine)
  tests=(-R "^tst_(friendrequest(model|paging|days|load)|vyrnoticeengine|vyrchatengine)")
  export TSAN_OPTIONS="halt_on_error=1:exitcode=66:second_deadlock_stack=1:suppressions=$root/scripts/tsan.supp"
fi

# The taskbar query's Windows branch must keep compiling: build it with the
# MinGW-w64 cross compiler (it needs nothing but <windows.h>).
x86_64-w64-mingw32-g++ -std=c++17 -Wall -Wextra -Werror -c src/plugins/im/VyrNotice/TaskbarEdge.cpp \
  -o "$(mktemp -d)/TaskbarEdge.obj"
echo "test.sh: Windows branch of TaskbarEdge.cpp compiles"

cmake -S . -B "$build" -DVYR_BUILD_TESTS=ON -DVYR_BUILD_DEMO=ON "${extra[@]}" >/dev/null
cmake --build "$build" -j"$(nproc)" "${targets[@]}"
cd "$build"
ctest --output-on-failure -j"$(nproc)" "${tests[@]}"

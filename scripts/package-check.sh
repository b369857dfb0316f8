#!/usr/bin/env bash
# Builds the library as a product (no tests, benchmarks or demo: internal
# classes stay hidden), installs it into a temporary prefix, builds the
# example host against the installed package and runs it offscreen. Also checks that the product library exports no
# internal class.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"

bash scripts/setup-deps.sh

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix="$work/prefix"

cmake -S . -B build-product -DVYR_BUILD_TESTS=OFF -DVYR_BUILD_DEMO=OFF -DVYR_BUILD_BENCH=OFF >/dev/null
cmake --build build-product -j"$(nproc)"
cmake --install build-product --prefix "$prefix" >/dev/null
echo "package-check: installed into $prefix"

# Internal classes stay hidden in a product build.
internal='NoticeListViewItem|NoticeListSortFilterModel|LessonNoticeText|ClusterNoticeText|ClassAheadNoticeWidget|ClassPrepareNoticeWidget|ClassStartNoticeWidget|CardParts|LessonPage|LessonEnterPage|FriendRequestTreeItem|FriendRequestShowMoreSignals|PushTracking|NameSpan|NoticeRemindText|LocalDays|FriendRequestSortFilterProxyModel|FriendRequestTreeView|ShadowMask'
if nm -DC --defined-only "$prefix/lib/libVyrNotice.so" | grep -E "($internal)::" >/dev/null; then
  echo "package-check: FAIL: the product library exports internal classes:" >&2
  nm -DC --defined-only "$prefix/lib/libVyrNotice.so" | grep -E "($internal)::" | head >&2
  exit 1
fi
echo "package-check: no internal class exported"

# Every installed header compiles on its own, with nothing but Qt and the
# installed include folders, and includes no private header.
kit_includes=$(find "$prefix/include/VyrNotice/kit" -mindepth 1 -maxdepth 1 -type d -printf ' -I%p')
for header in "$prefix"/include/VyrNotice/*.h; do
  if grep -q '_p\.h"' "$header"; then
    echo "package-check: FAIL: $(basename "$header") includes a private header" >&2
    exit 1
  fi
  echo "#include <$(basename "$header")>" | g++ -std=c++17 -fPIC -fsyntax-only -x c++ - \
    -I"$prefix/include/VyrNotice" $kit_includes $(pkg-config --cflags Qt5Widgets)
done
echo "package-check: every installed header compiles on its own"

cmake -S examples/minimal-host -B "$work/example" -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$work/example" -j"$(nproc)"
QT_QPA_PLATFORM=offscreen LANG=C.UTF-8 "$work/example/minimal-host" 2>"$work/example.log" | tee "$work/example.out"
grep -q "window visible: yes" "$work/example.out"
echo "package-check: the example host built against the installed package and ran"

# The same host with the source tree added through add_subdirectory(): only
# the libraries are built, and the host's build type is not forced.
cmake -S examples/subdirectory-host -B "$work/subdirectory" >/dev/null
if grep -q '^CMAKE_BUILD_TYPE:STRING=.\+' "$work/subdirectory/CMakeCache.txt"; then
  echo "package-check: FAIL: added as a subdirectory, VyrNotice forced a build type" >&2
  exit 1
fi
if cmake --build "$work/subdirectory" --target help | grep -E 'tst_|notice-demo|bench_'; then
  echo "package-check: FAIL: added as a subdirectory, VyrNotice builds tests, demo or benchmarks" >&2
  exit 1
fi
cmake --build "$work/subdirectory" -j"$(nproc)" --target subdirectory-host
QT_QPA_PLATFORM=offscreen LANG=C.UTF-8 "$work/subdirectory/subdirectory-host" 2>"$work/subdirectory.log" \
  | tee "$work/subdirectory.out"
grep -q "window visible: yes" "$work/subdirectory.out"
echo "package-check: the example host built with VyrNotice as a subdirectory and ran"

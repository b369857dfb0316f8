#!/usr/bin/env bash
# Sets up, builds and runs the demo host. Arguments go to the demo.
# Without a display it runs on the offscreen platform.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"

bash scripts/setup-deps.sh
cmake -S . -B build -DVYR_BUILD_DEMO=ON >/dev/null
cmake --build build -j"$(nproc)" --target notice-demo
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ] && [ -z "${QT_QPA_PLATFORM:-}" ]; then
  export QT_QPA_PLATFORM=offscreen
fi
exec ./build/src/apps/notice-demo/notice-demo "$@"

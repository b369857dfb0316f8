#!/usr/bin/env bash
# Sets up, builds and runs the demo host. Arguments go to the demo.
# It builds in the repository root but runs where it was called, so relative
# paths (--scenario my.json, --screenshots shots/) mean what the caller meant.
# Without a display the demo itself draws offscreen on a simulated screen.
set -euo pipefail
caller=$(pwd)
root=$(cd "$(dirname "$0")/.." && pwd)

cd "$root"
bash scripts/setup-deps.sh
cmake -S . -B build -DVYR_BUILD_DEMO=ON >/dev/null
cmake --build build -j"$(nproc)" --target notice-demo

cd "$caller"
exec "$root/build/src/apps/notice-demo/notice-demo" "$@"

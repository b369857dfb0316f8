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
demo="$root/build/src/apps/notice-demo/notice-demo"
if [ "${1:-}" != "--all" ]; then
  exec "$demo" "$@"
fi

# --all: the embedded scenario, then every scenario file in turn; the other
# arguments go to each run, and screenshots land in one subfolder per scenario.
shift
scenarios=(default coursework popups single-popups friendrequests)
for name in "${scenarios[@]}"; do
  args=()
  while [ $# -gt 0 ]; do args+=("$1"); shift; done
  run=()
  for ((i = 0; i < ${#args[@]}; i++)); do
    run+=("${args[$i]}")
    if [ "${args[$i]}" = "--screenshots" ] && [ $((i + 1)) -lt ${#args[@]} ]; then
      i=$((i + 1))
      run+=("${args[$i]%/}/$name")
      mkdir -p "${args[$i]%/}/$name"
    fi
  done
  set -- "${args[@]}"
  if [ "$name" != default ]; then
    run+=(--scenario "$root/src/apps/notice-demo/scenarios/$name.json")
  fi
  echo "=== scenario: $name"
  "$demo" "${run[@]}"
done

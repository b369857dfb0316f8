#!/usr/bin/env bash
# Installs every Debian package that the build, the tests and the demo need.
# Idempotent: packages already installed are skipped, and apt is not touched
# at all when nothing is missing. Extra packages that one script needs
# beside these are given as arguments (scripts/fuzz.sh: clang and its runtimes).
set -euo pipefail

packages=(
  build-essential cmake pkg-config tzdata
  qtbase5-dev qttools5-dev qttools5-dev-tools libqt5svg5-dev libqt5x11extras5-dev
  fonts-dejavu-core fonts-wqy-microhei
  xvfb xauth x11-utils
  libgtest-dev libbenchmark-dev libcpp-httplib-dev
  g++-mingw-w64-x86-64 qtbase5-private-dev
  "$@"
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  echo "setup-deps: all packages present"
  exit 0
fi

SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO=sudo; fi
echo "setup-deps: installing ${missing[*]}"
$SUDO apt-get update -qq
DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"

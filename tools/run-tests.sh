#!/usr/bin/env bash
# Installs what is missing, builds everything and runs every test.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
bash "$root/tools/install-deps.sh"
bash "$root/tools/build.sh"
cd "${OMBRA_BUILD_DIR:-$root/build}"
QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j"$(nproc)"

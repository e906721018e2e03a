#!/usr/bin/env bash
# Configures and builds into build/ (Ninja). Extra arguments are targets.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
build="${OMBRA_BUILD_DIR:-$root/build}"
if [ ! -f "$build/build.ninja" ]; then
  cmake -G Ninja -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DOMBRA_BUILD_TESTS=ON -DOMBRA_BUILD_BENCH="${OMBRA_BUILD_BENCH:-OFF}"
fi
ninja -C "$build" -j"$(nproc)" "$@"

#!/usr/bin/env bash
# Installs what is missing, builds the plotter and starts it on its demo
# data: the demo chart and the recorded instrument log, in a home of its
# own (build/demo-home) that never touches your own settings.
# With no display it runs offscreen and writes ombra-screenshot.png.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
bash "$root/tools/install-deps.sh"
bash "$root/tools/build.sh" ombra ombra-cli
build="${OMBRA_BUILD_DIR:-$root/build}"
export OMBRA_HOME="${OMBRA_HOME:-$build/demo-home}"
mkdir -p "$OMBRA_HOME"
bash "$root/tools/demo-setup.sh" "$build/app/ombra-cli" "$OMBRA_HOME"
args=(NOSPLASH)
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
  shot="${OMBRA_SCREENSHOT:-$root/ombra-screenshot.png}"
  echo "No display: running offscreen, the picture goes to $shot"
  args+=(--screenshot "$shot" --after "${OMBRA_AFTER:-8}")
fi
exec "$build/app/ombra/ombra" "${args[@]}" "$@"

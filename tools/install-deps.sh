#!/usr/bin/env bash
# Installs the Debian packages of tools/packages.txt that are missing.
# Safe to run again: with everything installed it does nothing.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
mapfile -t wanted < <(grep -v '^\s*#' "$here/packages.txt" | sed 's/\s.*//' | grep -v '^$')
missing=()
for p in "${wanted[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done
if ((${#missing[@]})); then
  echo "Installing: ${missing[*]}"
  SUDO=""
  if [ "$(id -u)" != 0 ]; then SUDO="sudo"; fi
  export DEBIAN_FRONTEND=noninteractive
  $SUDO apt-get update -qq
  $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

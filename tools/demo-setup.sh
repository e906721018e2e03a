#!/usr/bin/env bash
# Prepares a demonstration home: settings that start the GPS on the
# recorded demo log and open the demo chart, and the demo chart itself.
# Runs once a home; delete the home folder to start afresh.
set -euo pipefail
cli="$1"
home="$2"
root="$(cd "$(dirname "$0")/.." && pwd)"
stamp="$home/.demo-ready"
[ -f "$stamp" ] && exit 0
ini="$home/Vestrane.ini"
if "$cli" --help 2>/dev/null | grep -q 'make-demo'; then
  "$cli" chart make-demo --root "$home" >/dev/null
fi
{
  echo "[Tarnel]"
  echo "AutoStartupGPS=2"
  echo "AutoStartupChart=True"
  echo "GPSPort=8"
  echo "ComPort8=file://$root/data/demo/ombra-demo.nmea"
} > "$ini"
touch "$stamp"

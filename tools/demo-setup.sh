#!/usr/bin/env bash
# Prepares a demonstration home: settings that start the GPS on the
# recorded demo log and open the demo chart and databases, the demo chart
# itself, and the "Demo Island" waypoint, route and boundary databases (a
# route round the island that the passage follows, a firing range across
# it), and the tidal streams round the island (the tide region Region01 in
# the home's tide data folder, "Dat"). Runs once a home; delete the home
# folder to start afresh. The databases and the tide region are added to an
# older demo home too.
set -euo pipefail
cli="$1"
home="$2"
root="$(cd "$(dirname "$0")/.." && pwd)"
stamp="$home/.demo-ready"
if "$cli" --help 2>/dev/null | grep -q 'nav-demo'; then
  "$cli" nav-demo --data "$home" >/dev/null
fi
if [ ! -f "$home/Dat/Region01.Hdr" ] && "$cli" --help 2>/dev/null | grep -q 'tide make-demo'; then
  mkdir -p "$home/Dat"
  "$cli" tide make-demo --out "$home/Dat/Region01" >/dev/null
fi
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
  # The radar's ARPA sentences are in the same log: a second port plays it.
  echo "ARPAEnable=1"
  echo "ARPALabels=1"
  echo "ARPAPort=7"
  echo "ComPort7=file://$root/data/demo/ombra-demo.nmea"
  echo "LastWaypointDatabase=Demo Island"
  echo "LastRouteDatabase=Demo Island"
  echo "LastBoundaryDatabase=Demo Island"
} > "$ini"
touch "$stamp"

#!/usr/bin/env bash
# Takes the picture of the console for the README: docs/console.png. Needs the packages of the groups display and
# develop, and a release build (run.sh makes one).
set -euo pipefail

root=$(cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.." && pwd)
build=${1:-$root/build/release}
picture=${2:-$root/docs/console.png}
size=1600x1000
# shellcheck source=tools/desk_on_screen.sh
source "$root/tools/desk_on_screen.sh"

# ---- what the operator does before the picture is taken -------------------------------------------------------------
# Some tracks into the queue, the first one on air, the second one loaded beside it.
key ctrl+shift+a
key ctrl+f
key o
key alt+t
for _ in 1 2 3 4 5 6 7; do
  key Down
  key Return
done
key alt+q
key Home
key ctrl+p
sleep 14
# ---------------------------------------------------------------------------------------------------------------------

mkdir -p "$(dirname "$picture")"
import -window root -depth 8 "png:$picture"
echo "$picture"

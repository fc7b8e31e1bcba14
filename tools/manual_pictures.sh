#!/usr/bin/env bash
# Takes the pictures of the manual: docs/manual/*.png. The one of the console is that of the README, made smaller. Needs
# the packages of the groups display and develop, and a release build (run.sh makes one).
set -euo pipefail

root=$(cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.." && pwd)
build=${1:-$root/build/release}
folder=${2:-$root/docs/manual}
size=1366x900
manager=openbox

# Something to look at in the Info Centre.
before_the_start() {
  local shows="$XDG_DATA_HOME/kelvo/Info Bank/Station/Shows"
  mkdir -p "$shows" "$XDG_DATA_HOME/kelvo/Info Bank/Station/House Rules" "$XDG_DATA_HOME/kelvo/Info Bank/Contacts"
  printf '%s\r\n' 'Saturday Night, 22:00 to 02:00' '' 'Opening: jingle 1, then straight into the first track.' \
    'News on the hour: let automatic play wait at the end of the track (Ctrl+Shift+P).' '' \
    'Words for the start:' '"Good evening, this is your Saturday night. We play what you ring in for until two."' \
    >"$shows/Saturday Night.txt"
  printf 'To be written.\r\n' >"$shows/Breakfast.txt"
  convert -size 480x320 gradient:'#2b6cb0'-'#12263a' -fill '#ffd166' -draw 'circle 240,160 240,90' "$shows/Saturday Night.png"
}
# shellcheck source=tools/desk_on_screen.sh
source "$root/tools/desk_on_screen.sh"

# Presses a key of the console and waits for the window with this name.
show() {
  xdotool windowactivate --sync "$window"
  key "$1"
  beside=$(timeout 20 xdotool search --sync --onlyvisible --name "$2" | tail -1)
  sleep 1
}
# Takes the window's picture and closes it.
take() {
  sleep 1
  import -window "$beside" -depth 8 png:- | convert - -resize '1000x>' -colors 128 "png:$folder/$1.png"
  key Escape
}

mkdir -p "$folder"
convert "$root/docs/console.png" -resize 1100x -colors 160 "png:$folder/console.png"

show ctrl+o '^Playlist Manager$'
# The demo library has a category of its own.
for each in d Tab Tab Tab Tab Down; do key "$each"; done
take playlists

show ctrl+shift+i '^Info Centre$'
for each in Down Down Return Down Down Return Down Down; do key "$each"; done
take info-centre

show ctrl+d '^Data Manager$'
take data-manager
ls -l "$folder"/*.png

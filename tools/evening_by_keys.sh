#!/usr/bin/env bash
# Works the program without a mouse, from its first run to the end of an evening: installer and demo library, splash,
# every window of the desk, a queue, two decks that are mixed, press-to-speak, the faders, the lock and automatic play.
# What came of it is read from the session log, the settings and the windows on the screen. Ends with 0 when all of it
# was as it should be; at the first thing that was not it says which, leaves a picture of the screen and ends with 1.
# Needs the packages of the groups display and develop, and a build (run.sh makes one). Takes some three minutes.
#
#   tools/evening_by_keys.sh [BUILD FOLDER] [PICTURE]
set -euo pipefail

root=$(cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.." && pwd)
build=${1:-$root/build/release}
picture=${2:-evening_by_keys.png}
code=4711

for program in Xvfb openbox xdotool import; do
  if ! command -v "$program" >/dev/null; then
    echo "$program is missing: see packages.txt" >&2
    exit 1
  fi
done

# Everything of this run lives and dies in one folder.
home=$(mktemp -d)
children=()
finish() {
  # The last one started ends first.
  for ((i = ${#children[@]} - 1; i >= 0; --i)); do
    kill "${children[i]}" 2>/dev/null || true
    wait "${children[i]}" 2>/dev/null || true
  done
  rm -rf "$home"
}
trap finish EXIT
export HOME=$home XDG_CONFIG_HOME=$home/config XDG_DATA_HOME=$home/data XDG_RUNTIME_DIR=$home/run
export XDG_CACHE_HOME=$home/cache LC_ALL=C.UTF-8 KELVO_SILENT=1
mkdir -p "$XDG_CONFIG_HOME" "$XDG_DATA_HOME"
mkdir -m 700 "$XDG_RUNTIME_DIR"
unset WAYLAND_DISPLAY QT_QPA_PLATFORM

# The server chooses a free number and tells it.
Xvfb -displayfd 3 -screen 0 1366x768x24 -nolisten tcp 3>"$home/display" 2>/dev/null &
children+=($!)
for _ in {1..100}; do
  if [[ -s $home/display ]]; then break; fi
  sleep 0.1
done
DISPLAY=:$(<"$home/display")
export DISPLAY
openbox 2>/dev/null &
children+=($!)
for _ in {1..100}; do
  if xdotool get_desktop >/dev/null 2>&1; then break; fi
  sleep 0.1
done

"$build/bin/kelvo" 2>"$home/kelvo.err" &
kelvo=$!
children+=("$kelvo")

# ---- how it is worked and looked at -----------------------------------------------------------------------------------
fail() {
  import -window root "png:$picture" 2>/dev/null || true
  echo "FAILED: $*   (on the screen: $picture; with the keyboard: $(active))" >&2
  tail -n 5 "$home/kelvo.err" "$XDG_DATA_HOME/kelvo/kelvo.log" >&2 2>/dev/null || true
  exit 1
}
told() { echo "ok: $*"; }
# key KEY...: each pressed and let go, as by a hand that doesn't hurry.
key() {
  local each
  for each in "$@"; do
    xdotool key --clearmodifiers "$each"
    sleep 0.25
  done
}
# times N KEY
times() {
  local i
  for ((i = 0; i < $1; ++i)); do key "$2"; done
}
typed() {
  xdotool type --delay 60 "$1"
  sleep 0.3
}
# The title of the window that has the keyboard.
active() { timeout 5 xdotool getactivewindow getwindowname 2>/dev/null || true; }
shown() { timeout 5 xdotool search --onlyvisible --name "$1" >/dev/null 2>&1; }
# until_ SECONDS WHAT COMMAND...: fails when the command is still false after so long.
until_() {
  local -i tries=$(($1 * 4))
  local what=$2
  shift 2
  while ! "$@"; do
    if ((tries-- <= 0)); then fail "$what"; fi
    sleep 0.25
  done
  told "$what"
}
gone() { ! shown "$1"; }
# has_keys PATTERN
# shellcheck disable=SC2053
has_keys() { [[ $(active) == $1 ]]; }
runs() { kill -0 "$kelvo" 2>/dev/null; }
ended() { ! runs; }
starts() { cat "$home"/Documents/*/Sessions/*.txt 2>/dev/null | tr -d '\r' | grep -c " Play : $1" || true; }
# started N PATTERN: so many starts of the session's log have this in them.
started() { (($(starts "$2") >= $1)); }
# setting KEY: what the settings hold for it.
setting() { grep -m 1 -E "^$1=" "$XDG_CONFIG_HOME/kelvo/settings.ini" | cut -d= -f2- | tr -d '"\r '; }
# window LETTER TITLE: an entry of the library's menu opens this window, and Escape closes it.
window() {
  key alt+l "$1"
  until_ 10 "'$2' opens from the menu and has the keyboard" has_keys "$2"
  times 3 Tab
  key Escape
  until_ 5 "Escape closes '$2'" gone "^$2\$"
}

# ---- the first run --------------------------------------------------------------------------------------------------
until_ 30 "the installer asks for the places" has_keys '*Installation Settings*'
# To the demo library by Tab alone: there and back past the folders' buttons.
key alt+p
until_ 5 "the folder of the demo library can be chosen" has_keys 'Choose A Folder'
key Escape
until_ 5 "Escape closes the choice and not the installer" has_keys '*Installation Settings*'
key alt+s
until_ 240 "the demo library is made" has_keys 'Kelvo 2007'
key Return
until_ 10 "Enter answers, and the splash follows" gone 'Installation Settings'
until_ 30 "the splash has the keyboard" has_keys 'Kelvo*'
begun=$SECONDS
sleep 2
key Escape
until_ 30 "the console opens" has_keys '*Console*'
if ((SECONDS - begun > 9)); then fail "Escape did not end the splash before its time"; fi
sleep 2

# ---- the windows beside the desk ------------------------------------------------------------------------------------
window i 'Import Music'
window t 'Transfer To Data Base'
window u 'Utility Folder'
window j 'Import Jingles'
window s 'Track Search'

# ---- a message ------------------------------------------------------------------------------------------------------
key ctrl+f
typed o
for answer in Return Escape; do
  key ctrl+p
  until_ 5 "an empty queue is told of" shown 'Auto Play Start'
  key "$answer"
  until_ 5 "$answer closes the message, whoever has the keyboard" gone 'Auto Play Start'
done

# ---- the queue ------------------------------------------------------------------------------------------------------
# Escape left the filter alone: the tracks that it found are added.
key alt+t Home Return
for _ in 1 2 3 4; do key Down Return; done
# More of them out of the search, with Enter on its button and the key of "Add To Queue".
key ctrl+shift+f
until_ 10 "the search opens" has_keys 'Track Search'
typed a
key Return
sleep 1
key alt+a ctrl+Return Escape
until_ 5 "the search is closed" has_keys '*Console*'

# ---- a fader --------------------------------------------------------------------------------------------------------
# Behind the list: its heading, down, cut, clear, edit, load, save, five jingles, their list, their level, the depth of
# press-to-speak and its speed, which goes to its end.
key alt+q Home
times 16 Tab
key End

# ---- two decks ------------------------------------------------------------------------------------------------------
key alt+q Home ctrl+1
sleep 1
key F7
until_ 10 "the first track is on air" started 1 ''
# The walk of the slider is over before the next command.
sleep 8
key alt+q Home Down ctrl+2
sleep 1
key F11
until_ 20 "the second one is mixed in" started 2 ''
sleep 8

# ---- press-to-speak -------------------------------------------------------------------------------------------------
# On "Set Timer", the last stop of Tab before the first list while tracks play: it speaks, and Enter alone presses it.
key alt+g
times 3 shift+Tab
xdotool keydown space
sleep 1
xdotool keyup space
sleep 1
if shown 'Set Timer'; then fail "the space bar pressed a button"; fi
key Return
until_ 5 "Enter presses it" has_keys 'Set Timer'
key Escape
until_ 5 "and Escape closes what it opened" has_keys '*Console*'

# ---- the lock -------------------------------------------------------------------------------------------------------
key ctrl+l
until_ 5 "the code is asked for" has_keys 'Kelvo 2007'
typed "$code"
key Return
until_ 5 "the screen is locked" has_keys '*Console*'
before=$(starts '')
key F7 F8 F10 ctrl+p ctrl+q y ctrl+shift+f alt+f Escape alt+l i Escape space Return
sleep 1
if ! has_keys '*Console*'; then fail "a locked screen opened something"; fi
if ! runs; then fail "a locked screen was closed"; fi
key alt+F4
until_ 5 "closing the window asks for the code" has_keys 'Kelvo 2007'
typed wrong
key Return
sleep 1
key Return
until_ 5 "a wrong one opens nothing" has_keys '*Console*'
key ctrl+q y alt+F4
until_ 5 "and it is still locked" has_keys 'Kelvo 2007'
typed "$code"
key Return
until_ 5 "the right one unlocks" has_keys '*Console*'
if (($(starts '') != before)); then fail "something was started on a locked screen"; fi

# ---- automatic play -------------------------------------------------------------------------------------------------
key ctrl+p
until_ 150 "automatic play goes on by itself" started $((before + 1)) ''
automatic() { (($(cat "$home"/Documents/*/Sessions/*.txt | grep -c '^Auto Play : ') >= 1)); }
until_ 150 "and its starts are in the session log" automatic
key ctrl+p
sleep 1

# ---- the end --------------------------------------------------------------------------------------------------------
key alt+F4
until_ 5 "the end is asked for" has_keys 'Kelvo 2007'
key Escape
until_ 5 "Escape stays" has_keys '*Console*'
key alt+F4
until_ 5 "and is asked for again" has_keys 'Kelvo 2007'
key Return
until_ 20 "Enter ends the program" ended
wait "$kelvo" || fail "the program ended with $?"
# Volume of the jingles, depth and speed of press-to-speak.
spoken=$(setting JingleSettings)
if [[ ,$spoken, != ,*,*,10,* ]]; then fail "its key moved no fader: JingleSettings is '$spoken'"; fi
if grep -q 'ERROR' "$XDG_DATA_HOME/kelvo/kelvo.log" 2>/dev/null; then fail "the error log is not empty"; fi
echo "An evening without a mouse: $(starts '') starts."

# shellcheck shell=bash disable=SC2154
# Sourced by the scripts that take pictures of the program: a desk of its own on a screen of its own, over a new demo
# library. Before: `build` is set and `size` is that of the screen; with `manager=openbox` windows beside the console get
# the keyboard; a function before_the_start can put files below $XDG_DATA_HOME. After: `window` is the console's, `home`
# holds all files of this run and goes with it, `key` presses keys.
: "${manager:=}"
for program in Xvfb xdotool import $manager; do
  if ! command -v "$program" >/dev/null; then
    echo "$program is missing: see packages.txt" >&2
    exit 1
  fi
done

# Everything of this run lives and dies in one folder: settings, library, server sockets.
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
mkdir -p "$XDG_CONFIG_HOME" "$XDG_DATA_HOME"
mkdir -m 700 "$XDG_RUNTIME_DIR"

"$build/tools/demo_library" --folder "$XDG_DATA_HOME/kelvo/demo" --settings "$XDG_CONFIG_HOME/kelvo/settings.ini"

if command -v pulseaudio >/dev/null; then
  PULSE_RUNTIME_PATH=$home PULSE_STATE_PATH=$home pulseaudio -n --daemonize=no --use-pid-file=no --exit-idle-time=-1 \
    --log-target="file:$home/pulse.log" --log-level=error \
    -L "module-native-protocol-unix socket=$home/native auth-anonymous=1" \
    -L "module-null-sink sink_name=main norewinds=1 sink_properties=device.description=Main" \
    -L "module-null-sink sink_name=headphones norewinds=1 sink_properties=device.description=Headphones" &
  children+=($!)
  export PULSE_SERVER=unix:$home/native
fi

# The server chooses a free number and tells it.
Xvfb -displayfd 3 -screen 0 "${size}x24" -nolisten tcp 3>"$home/display" 2>/dev/null &
children+=($!)
for _ in {1..100}; do
  if [[ -s $home/display ]]; then break; fi
  sleep 0.1
done
DISPLAY=:$(<"$home/display")
export DISPLAY
unset WAYLAND_DISPLAY

if [[ $(type -t before_the_start) == function ]]; then before_the_start; fi
if [[ -n $manager ]]; then
  "$manager" >/dev/null 2>&1 &
  children+=($!)
fi
"$build/bin/kelvo" &
children+=($!)

# The splash shows first: the console is the window with the program's name that fills the screen.
window=
for _ in {1..300}; do
  for candidate in $(xdotool search --onlyvisible --name 'Kelvo' 2>/dev/null || true); do
    eval "$(xdotool getwindowgeometry --shell "$candidate" 2>/dev/null || echo WIDTH=0)"
    if ((WIDTH >= 1000)); then window=$candidate; fi
  done
  if [[ -n $window ]]; then break; fi
  sleep 0.2
done
if [[ -z $window ]]; then
  echo "The console did not show within a minute." >&2
  exit 1
fi

key() {
  xdotool key --clearmodifiers "$@"
  sleep 0.4
}

# Without a window manager nothing gives the window the screen and the keys.
xdotool windowmove "$window" 0 0 windowsize "$window" "${size%x*}" "${size#*x}"
xdotool windowfocus "$window"
sleep 2

#!/usr/bin/env bash
# Builds the console when needed, makes the demo library on the first run, and opens the console.
set -euo pipefail

root=$(cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")" && pwd)
# shellcheck source=tools/packages.sh
source "$root/tools/packages.sh"
install_missing "$root/packages.txt" build run

build=$root/build/release
if [[ ! -f $build/build.ninja ]]; then
  cmake -S "$root" --preset release -DKELVO_TESTS=OFF
fi
cmake --build "$build" --target kelvo demo_library -j "$(nproc)"

"$build/tools/demo_library" --if-missing \
  --folder "${XDG_DATA_HOME:-$HOME/.local/share}/kelvo/demo" \
  --quiz-sounds "${XDG_DATA_HOME:-$HOME/.local/share}/kelvo" \
  --settings "${XDG_CONFIG_HOME:-$HOME/.config}/kelvo/settings.ini" ||
  echo "Going on without the demo library."

# A server of PulseAudio or PipeWire, or a bare sound card.
runtime=${XDG_RUNTIME_DIR:-/run/user/$(id -u)}
if [[ -z ${PULSE_SERVER:-} && ! -S $runtime/pulse/native && ! -S $runtime/pipewire-0 ]] &&
  ! grep -qs '^ *[0-9]' /proc/asound/cards; then
  echo "No sound server and no sound card: playing to a silent device."
  export KELVO_SILENT=1
fi

if [[ -z ${DISPLAY:-} && -z ${WAYLAND_DISPLAY:-} && -z ${QT_QPA_PLATFORM:-} ]]; then
  echo "No display: the console runs on a virtual one."
  install_missing "$root/packages.txt" display
  exec xvfb-run -a -s "-screen 0 1600x1000x24" "$build/bin/kelvo" "$@"
fi
exec "$build/bin/kelvo" "$@"

#!/usr/bin/env bash
# Sets everything up and runs the demo host against the sample theme repository the project ships.
# With a display the demo opens its window; without one it runs the same flow off screen, writes
# screenshots of the demo and of the updater window, and prints what the updater offers.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
"$top/scripts/install-dependencies.sh"
"$top/scripts/build.sh"
build=${CORVANE_BUILD_DIR:-$top/build}
demo=$build/demo

# A fresh sample: the repository with its two commits, no clone yet, a few older themes installed.
"$top/examples/make-sample-repository.sh" "$demo/remote" >/dev/null
rm -rf "$demo/clone" "$demo/installed" "$demo/settings.ini"
mkdir -p "$demo/installed"
cp "$top"/examples/sample-installed/*.theme.json "$demo/installed/"

locations=(--remote "$demo/remote" --clone "$demo/clone" --installed "$demo/installed")
corvane=$build/tools/corvane/corvane
host=$build/examples/demo-host/corvane-demo

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  exec "$host" "${locations[@]}" --settings "$demo/settings.ini" "$@"
fi

echo "No display: running the demo off screen." >&2
export QT_QPA_PLATFORM=offscreen
mkdir -p "$demo/screenshots"
"$host" "${locations[@]}" --settings "$demo/settings.ini" --screenshot "$demo/screenshots/demo-host.png" "$@"
"$corvane" show "${locations[@]}" --screenshot "$demo/screenshots/updater.png"
echo "wrote $demo/screenshots/updater.png"
echo
echo "What the updater offers for the sample (corvane list):"
"$corvane" list "${locations[@]}"

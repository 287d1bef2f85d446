#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Runs a command on a desktop of its own: an Xvfb server on a free display number with the openbox
# window manager, so windows get frames, placement, focus and stacking as on a person's screen. Both
# are stopped when the command ends; the command's status is the script's.
set -euo pipefail

if ! command -v Xvfb >/dev/null || ! command -v openbox >/dev/null; then
  echo "on-desktop.sh: Xvfb and openbox are needed (scripts/install-dependencies.sh installs them)" >&2
  exit 1
fi

work=$(mktemp -d)
xvfb_pid= openbox_pid=
cleanup() {
  [ -n "$openbox_pid" ] && kill "$openbox_pid" 2>/dev/null || true
  [ -n "$xvfb_pid" ] && kill "$xvfb_pid" 2>/dev/null || true
  wait 2>/dev/null || true
  rm -rf "$work"
}
trap cleanup EXIT

# -displayfd: the server picks a free display number and writes it once it accepts connections.
exec {display_fd}<> <(:)
Xvfb -displayfd "$display_fd" -screen 0 1280x900x24 -nolisten tcp -noreset >"$work/xvfb.log" 2>&1 &
xvfb_pid=$!
display=
for _ in $(seq 100); do
  if read -r -t 0.1 -u "$display_fd" display && [ -n "$display" ]; then break; fi
  kill -0 "$xvfb_pid" 2>/dev/null || { cat "$work/xvfb.log" >&2; exit 1; }
done
[ -n "$display" ] || { echo "on-desktop.sh: Xvfb did not start" >&2; exit 1; }
export DISPLAY=:$display

# A window manager of our own, with no user configuration: frames, placement, focus.
export XDG_CONFIG_HOME=$work/config
openbox --sm-disable >"$work/openbox.log" 2>&1 &
openbox_pid=$!
for _ in $(seq 100); do
  xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id' && break
  sleep 0.05
done

export QT_QPA_PLATFORM=xcb
unset XDG_CONFIG_HOME
"$@"

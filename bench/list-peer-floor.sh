#!/bin/sh
# SPDX-License-Identifier: MIT
# Peer (c), the floor: the same two git commands and reading every theme file once, computing nothing.
# usage: list-peer-floor.sh CLONE INSTALLED
set -e
git -C "$1" fetch --quiet origin
git -C "$1" checkout --quiet -f origin/master
exec cat "$1"/Themes/*.theme.json "$2"/*.theme.json > /dev/null

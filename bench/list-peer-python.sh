#!/bin/sh
# SPDX-License-Identifier: MIT
# Peer (a): git brings the clone to origin/master, Python's json and a dict compute the rows.
# usage: list-peer-python.sh CLONE INSTALLED
set -e
git -C "$1" fetch --quiet origin
git -C "$1" checkout --quiet -f origin/master
exec "${PYTHON:-python3}" "$(dirname "$0")/list-peer.py" "$1/Themes" "$2"

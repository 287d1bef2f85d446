#!/bin/sh
# SPDX-License-Identifier: MIT
# Peer (b): git brings the clone to origin/master, one jq run computes the rows.
# usage: list-peer-jq.sh CLONE INSTALLED
set -e
git -C "$1" fetch --quiet origin
git -C "$1" checkout --quiet -f origin/master
exec jq -n -r --arg remote "$1/Themes/" -f "$(dirname "$0")/list-peer.jq" "$1"/Themes/*.theme.json "$2"/*.theme.json

#!/bin/bash
# SPDX-License-Identifier: MIT
# `corvane install --all` of 2,000 updates against the floor of the same copies and Trash moves done in
# one Python process (bench/install-floor.py), side by side in one hyperfine run. Each run starts from
# the same installed directory and an empty Trash; the clone is synchronised beforehand, so corvane
# finds the repository unchanged.
#
#   bench/install-vs-floor.sh [CORVANE] [WORKDIR]
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
corvane=${1:-$here/../build/tools/corvane/corvane}
work=${2:-$(mktemp -d)}
count=${COUNT:-2000}
runs=${RUNS:-10}
command -v hyperfine > /dev/null || { echo "hyperfine is needed" >&2; exit 2; }
[ -x "$corvane" ] || { echo "no corvane at $corvane (build it first)" >&2; exit 2; }
export GIT_CONFIG_NOSYSTEM=1 GIT_CONFIG_GLOBAL=/dev/null

remote=$work/remote pristine=$work/pristine installed=$work/installed data=$work/data
if [ ! -d "$remote" ]; then
    mkdir -p "$remote/Themes" "$pristine"
    for i in $(seq -w 1 "$count"); do
        printf '{"name": "Theme %s", "style": "dark", "author": [{"name": "A"}], "version": "2.0.0"}' "$i" \
            > "$remote/Themes/t$i.theme.json"
        printf '{"name": "Theme %s", "style": "dark", "author": [{"name": "A"}], "version": "1.0.0"}' "$i" \
            > "$pristine/t$i.theme.json"
    done
    git -C "$remote" init --quiet --initial-branch=master
    git -C "$remote" add --all
    git -C "$remote" -c user.name=b -c user.email=b@b commit --quiet -m themes
fi
reset="rm -rf $installed $data && cp -r $pristine $installed && mkdir -p $data"
eval "$reset"
XDG_DATA_HOME=$data "$corvane" list --remote "$remote" --clone "$work/clone" --installed "$installed" > /dev/null
echo "load average: $(cut -d' ' -f1-3 /proc/loadavg) on $(nproc) cores" >&2
hyperfine --runs "$runs" --prepare "$reset" --style basic --export-json "$work/install-times.json" \
    -n "corvane install --all ($count updates)" \
    "XDG_DATA_HOME=$data $corvane install --all --remote $remote --clone $work/clone --installed $installed" \
    -n "floor: copy + move to the Trash in one process" \
    "python3 $here/install-floor.py $work/clone/Themes $installed $data/Trash"

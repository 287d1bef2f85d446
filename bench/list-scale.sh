#!/bin/bash
# SPDX-License-Identifier: MIT
# How `corvane list` grows from 10,000 to 100,000 remote themes (5,000 and 50,000 installed), and its
# peak memory at 100,000 against the Python peer's.
#
#   bench/list-scale.sh [CORVANE] [WORKDIR]
#
# CORVANE defaults to build/tools/corvane/corvane, WORKDIR to a new temporary directory (the two
# workloads take about 1.2 GB). Every clone is synchronised once beforehand, so each run finds the
# remote unchanged, as in bench/compare-list.sh.
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
corvane=${1:-$here/../build/tools/corvane/corvane}
work=${2:-$(mktemp -d)}
runs=${RUNS:-10}
command -v hyperfine > /dev/null || { echo "hyperfine is needed" >&2; exit 2; }
[ -x "$corvane" ] || { echo "no corvane at $corvane (build it first)" >&2; exit 2; }
PYTHON=${PYTHON:-$(python3 -c 'import sys; print(sys.executable)')}
export PYTHON GIT_CONFIG_NOSYSTEM=1 GIT_CONFIG_GLOBAL=/dev/null

quote() { printf '%q ' "$@"; }
commands=()
for count in 10000 100000; do
    dir="$work/$count"
    [ -d "$dir/remote" ] || { echo "building $count themes in $dir" >&2; python3 "$here/list-workload.py" "$dir" "$count"; }
    [ -d "$dir/peer-clone" ] || git clone --quiet "file://$dir/remote" "$dir/peer-clone"
    list=("$corvane" list --remote "file://$dir/remote" --clone "$dir/corvane-clone" --installed "$dir/installed")
    "${list[@]}" > "$dir/corvane.out"
    "$here/list-peer-python.sh" "$dir/peer-clone" "$dir/installed" > "$dir/python.out"
    cmp "$dir/corvane.out" "$dir/python.out"
    echo "$count: $(wc -l < "$dir/corvane.out") rows, identical for corvane and Python" >&2
    commands+=(-n "corvane list $count" "$(quote "${list[@]}")")
done
echo "load average: $(cut -d' ' -f1-3 /proc/loadavg) on $(nproc) cores" >&2
hyperfine --warmup 2 --runs "$runs" --export-json "$work/scale-times.json" --style basic "${commands[@]}"

peak() { # the largest maximum resident set size of three runs, in KiB
    local best=0 kib
    for _ in 1 2 3; do
        kib=$(/usr/bin/time -v "$@" 2>&1 > /dev/null | awk -F': ' '/Maximum resident set size/ {print $2}')
        [ "$kib" -gt "$best" ] && best=$kib
    done
    echo "$best"
}
big="$work/100000"
corvaneMemory=$(peak "$corvane" list --remote "file://$big/remote" --clone "$big/corvane-clone" --installed "$big/installed")
pythonMemory=$(peak "$here/list-peer-python.sh" "$big/peer-clone" "$big/installed")

python3 - "$work/scale-times.json" "$corvaneMemory" "$pythonMemory" <<'PY'
import json, sys
r = {x["command"]: x for x in json.load(open(sys.argv[1]))["results"]}
small, large = r["corvane list 10000"], r["corvane list 100000"]
corvane, python = int(sys.argv[2]), int(sys.argv[3])
print(f"corvane list: 10,000 {small['mean'] * 1e3:.1f} ms ± {small['stddev'] * 1e3:.1f}, "
      f"100,000 {large['mean'] * 1e3:.1f} ms ± {large['stddev'] * 1e3:.1f}: "
      f"{large['mean'] / small['mean']:.2f}x (target <= 11x)")
print(f"peak memory at 100,000: corvane {corvane / 1024:.1f} MiB, Python {python / 1024:.1f} MiB: "
      f"{corvane / python:.2f}x (target <= 2x)")
PY

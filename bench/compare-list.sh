#!/bin/bash
# SPDX-License-Identifier: MIT
# Times `corvane list` against three peers on one workload and measures everyone's peak memory.
#
#   bench/compare-list.sh [CORVANE] [WORKDIR]
#
# CORVANE defaults to build-differences/tools/corvane/corvane, WORKDIR to a new temporary directory.
# Workload: a file:// remote of 10,000 theme files of about 1 KB, 5,000 installed of which half are
# older; every clone is synchronised once beforehand, so each run finds the remote unchanged.
# INTERLEAVED=ROUNDS times them in turn (bench/interleaved-timing.py) instead of with hyperfine.
# Peers: (a) git fetch + git checkout -f origin/master + Python's json and a dict, (b) the same with
# jq, (c) the floor: the two git commands and cat of every theme file. PYTHON names the interpreter.
# BASELINE=path/to/an/older/corvane times that build too, on a clone of its own, for a before/after.
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
corvane=${1:-$here/../build-differences/tools/corvane/corvane}
work=${2:-$(mktemp -d)}
runs=${RUNS:-15}

for tool in hyperfine:hyperfine /usr/bin/time:time jq:jq; do
    if ! command -v "${tool%%:*}" > /dev/null; then
        sudo=; [ "$(id -u)" -eq 0 ] || sudo=sudo
        $sudo apt-get install -y "${tool##*:}"
    fi
done
[ -x "$corvane" ] || { echo "no corvane at $corvane (build it first)" >&2; exit 2; }
# The interpreter itself, not a version manager's shim in front of it (a pyenv shim alone costs
# some 150 ms per start here), so the peer is timed as Python, not as its launcher.
PYTHON=${PYTHON:-$(python3 -c 'import sys; print(sys.executable)')}
export PYTHON

if [ ! -d "$work/remote" ]; then
    echo "building the workload in $work" >&2
    python3 "$here/list-workload.py" "$work"
fi
remote="file://$work/remote"
git clone --quiet "$remote" "$work/peer-clone" 2> /dev/null || true

list=("$corvane" list --remote "$remote" --clone "$work/corvane-clone" --installed "$work/installed")
python=("$here/list-peer-python.sh" "$work/peer-clone" "$work/installed")
jq=("$here/list-peer-jq.sh" "$work/peer-clone" "$work/installed")
floor=("$here/list-peer-floor.sh" "$work/peer-clone" "$work/installed")

# Everyone must print the same rows, or the timings compare different work.
"${list[@]}" > "$work/corvane.out"
"${python[@]}" > "$work/python.out"
"${jq[@]}" > "$work/jq.out"
cmp "$work/corvane.out" "$work/python.out"
cmp "$work/corvane.out" "$work/jq.out"
echo "$(wc -l < "$work/corvane.out") rows, identical for corvane, Python and jq" >&2

quote() { printf '%q ' "$@"; }
baseline=()
if [ -n "${BASELINE:-}" ]; then
    before=("$BASELINE" list --remote "$remote" --clone "$work/baseline-clone" --installed "$work/installed")
    "${before[@]}" | cmp - "$work/corvane.out"
    baseline=(-n baseline "$(quote "${before[@]}")")
fi
if [ -n "${INTERLEAVED:-}" ]; then
    # On a shared machine: one run of each per round, in turn, ratios per round (see the script).
    before_args=()
    [ -n "${BASELINE:-}" ] && before_args=("baseline=$(quote "${before[@]}")")
    exec "$here/interleaved-timing.py" "$INTERLEAVED" "corvane=$(quote "${list[@]}")" "${before_args[@]}" \
        "python=$(quote "${python[@]}")" "floor=$(quote "${floor[@]}")"
fi
hyperfine --warmup 3 --runs "$runs" --export-json "$work/times.json" --style basic \
    -n corvane "$(quote "${list[@]}")" "${baseline[@]}" \
    -n python "$(quote "${python[@]}")" \
    -n jq "$(quote "${jq[@]}")" \
    -n floor "$(quote "${floor[@]}")"

peak() { # the largest maximum resident set size of five runs, in KiB
    local best=0 kib
    for _ in 1 2 3 4 5; do
        kib=$(/usr/bin/time -v "$@" 2>&1 > /dev/null | awk -F': ' '/Maximum resident set size/ {print $2}')
        [ "$kib" -gt "$best" ] && best=$kib
    done
    echo "$best"
}
declare -A memory
memory[corvane]=$(peak "${list[@]}")
memory[python]=$(peak "${python[@]}")
memory[jq]=$(peak "${jq[@]}")
memory[floor]=$(peak "${floor[@]}")

python3 - "$work/times.json" "${memory[corvane]}" "${memory[python]}" "${memory[jq]}" "${memory[floor]}" <<'PY'
import json, sys
results = {r["command"]: r for r in json.load(open(sys.argv[1]))["results"]}
memory = dict(zip(["corvane", "python", "jq", "floor"], map(int, sys.argv[2:6])))
c = results["corvane"]
print()
print("%-8s %10s %10s %10s %12s" % ("", "mean ms", "min ms", "stddev", "peak MiB"))
for name in ["corvane", "python", "jq", "floor"]:
    r = results[name]
    print("%-8s %10.1f %10.1f %10.1f %12.1f" % (name, r["mean"] * 1e3, r["min"] * 1e3, r["stddev"] * 1e3,
                                                 memory[name] / 1024))
print()
print("corvane / floor time: %.2fx (target <= 1.0x)" % (c["mean"] / results["floor"]["mean"]))
print("python / corvane time: %.2fx (target >= 3x)" % (results["python"]["mean"] / c["mean"]))
print("jq / corvane time:     %.2fx" % (results["jq"]["mean"] / c["mean"]))
if "baseline" in results:
    print("baseline / corvane time: %.2fx (mean %.1f ms)" % (results["baseline"]["mean"] / c["mean"], results["baseline"]["mean"] * 1e3))
print("corvane / python peak memory: %.2fx (target <= 2x)" % (memory["corvane"] / memory["python"]))
PY

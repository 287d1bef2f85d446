#!/bin/bash
# SPDX-License-Identifier: MIT
# What showing a first clone's progress costs: `corvane list` making its first clone over git:// with
# stderr on a terminal (progress drawn on it, a few times a second) against the same with stderr sent
# to /dev/null (no progress reported at all). Both run under script(1), so both pay for the terminal.
#
#   bench/clone-progress-cost.sh [CORVANE] [WORKDIR]
#
# Workload: the list workload (COUNT theme files of about 1 KB, 10,000 by default, one commit).
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
corvane=${1:-$here/../build/tools/corvane/corvane}
work=${2:-$(mktemp -d)}
runs=${RUNS:-10}
count=${COUNT:-10000}
port=${PORT:-19419}

command -v hyperfine > /dev/null || { echo "hyperfine is needed" >&2; exit 2; }
command -v script > /dev/null || { echo "script (util-linux) is needed" >&2; exit 2; }
[ -x "$corvane" ] || { echo "no corvane at $corvane (build it first)" >&2; exit 2; }
export GIT_CONFIG_NOSYSTEM=1 GIT_CONFIG_GLOBAL=/dev/null

. "$here/serve-list-workload.sh"
echo "load average: $(cut -d' ' -f1-3 /proc/loadavg) on $(nproc) cores" >&2

list="$(printf '%q ' "$corvane" list --remote "$remote" --clone "$work/clone" --installed "$work/installed")"
hyperfine --warmup 1 --runs "$runs" --export-json "$work/progress-times.json" --style basic \
    --prepare "rm -rf $(printf %q "$work/clone")" \
    -n "progress on a terminal" "script -qec $(printf %q "$list > /dev/null") /dev/null" \
    -n "no progress" "script -qec $(printf %q "$list > /dev/null 2> /dev/null") /dev/null"

python3 - "$work/progress-times.json" <<'PY'
import json, sys
r = {x["command"]: x for x in json.load(open(sys.argv[1]))["results"]}
p, n = r["progress on a terminal"], r["no progress"]
print(f"first clone with progress {p['mean'] * 1e3:.1f} ms ± {p['stddev'] * 1e3:.1f} (median {p['median'] * 1e3:.1f}), "
      f"without {n['mean'] * 1e3:.1f} ms ± {n['stddev'] * 1e3:.1f} (median {n['median'] * 1e3:.1f}): "
      f"ratio {p['mean'] / n['mean']:.3f}x by the means, {p['median'] / n['median']:.3f}x by the medians")
PY

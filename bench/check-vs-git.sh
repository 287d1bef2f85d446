#!/bin/bash
# SPDX-License-Identifier: MIT
# Times `corvane check` against the git command line doing the same question by hand.
#
#   bench/check-vs-git.sh [CORVANE] [WORKDIR]
#
# CORVANE defaults to build-sources/tools/corvane/corvane, WORKDIR to a new temporary directory.
# Workload: a file:// remote of 10,000 theme files of about 1 KB in one commit; the module's clone and a
# plain git clone are both up to date before the timing, so every run finds the remote unchanged.
# Peers, in a plain clone: `git fetch && git rev-parse HEAD`, the floor: it neither looks at the working
# tree nor locks anything; and `git fetch && git checkout -f --detach origin/master && git rev-parse
# HEAD`, the same work as corvane check, which also puts back every tracked file edited by hand and so
# must look at each one (10,000 lstat calls). BASELINE=path/to/an/older/corvane times that build too,
# on a clone of its own, for a before/after. INTERLEAVED=ROUNDS times them in turn instead of one after
# another (bench/interleaved-timing.py), which a shared machine's drifting load needs.
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
corvane=${1:-$here/../build-sources/tools/corvane/corvane}
work=${2:-$(mktemp -d)}
runs=${RUNS:-30}
themes=${THEMES:-10000}

command -v hyperfine > /dev/null || { echo "hyperfine is needed" >&2; exit 2; }
[ -x "$corvane" ] || { echo "no corvane at $corvane (build it first)" >&2; exit 2; }

# Neither side reads the user's or the system's git configuration.
export GIT_CONFIG_NOSYSTEM=1 GIT_CONFIG_GLOBAL=/dev/null
export GIT_AUTHOR_NAME=Bench GIT_AUTHOR_EMAIL=bench@example.org
export GIT_COMMITTER_NAME=Bench GIT_COMMITTER_EMAIL=bench@example.org

if [ ! -d "$work/remote/.git" ]; then
    echo "building $themes themes in $work/remote" >&2
    git init --quiet --initial-branch=master "$work/remote"
    python3 - "$work/remote/Themes" "$themes" <<'PY'
import json, os, sys
directory, count = sys.argv[1], int(sys.argv[2])
os.makedirs(directory, exist_ok=True)
palette = {f"token{n:02d}": f"#{(n * 2654435761) % 0xFFFFFF:06x}" for n in range(36)}
for index in range(count):
    theme = {"name": f"Theme {index:05d}", "style": "dark" if index % 2 else "light",
             "author": [{"name": "Ada Lovelace"}], "version": f"1.{index % 7}.0", "editor": palette}
    with open(os.path.join(directory, f"theme-{index:05d}.theme.json"), "w") as file:
        json.dump(theme, file, indent=1)
PY
    git -C "$work/remote" add --all
    git -C "$work/remote" commit --quiet -m "Themes"
fi
remote="file://$work/remote"
head=$(git -C "$work/remote" rev-parse HEAD)
[ -d "$work/plain" ] || git clone --quiet "$remote" "$work/plain"
check=("$corvane" check --remote "$remote" --clone "$work/clone" --since "$head")

# Both answer the same question with the same commit.
[ "$("${check[@]}")" = up-to-date ] || { echo "corvane check did not find the clone up to date" >&2; exit 1; }
git -C "$work/plain" fetch --quiet
[ "$(git -C "$work/plain" rev-parse HEAD)" = "$head" ]
echo "$(ls "$work/remote/Themes" | wc -l) themes, $(du -sh --apparent-size "$work/remote/Themes" | cut -f1); both at $head" >&2

quote() { printf '%q ' "$@"; }
plain=$(printf %q "$work/plain")
baseline=()
if [ -n "${BASELINE:-}" ]; then
    before=("$BASELINE" check --remote "$remote" --clone "$work/baseline-clone" --since "$head")
    [ "$("${before[@]}")" = up-to-date ]
    baseline=(-n "baseline check" "$(quote "${before[@]}")")
fi
echo "load average: $(cut -d' ' -f1-3 /proc/loadavg) on $(nproc) cores" >&2
if [ -n "${INTERLEAVED:-}" ]; then
    # On a shared machine: one run of each per round, in turn, ratios per round (see the script).
    before_args=()
    [ -n "${BASELINE:-}" ] && before_args=("baseline check=$(quote "${before[@]}")")
    exec "$here/interleaved-timing.py" "$INTERLEAVED" "corvane check=$(quote "${check[@]}")" "${before_args[@]}" \
        "git fetch && git rev-parse HEAD=git -C $plain fetch --quiet && git -C $plain rev-parse HEAD" \
        "git fetch && git checkout -f && git rev-parse HEAD=git -C $plain fetch --quiet && git -C $plain checkout --quiet -f --detach origin/master && git -C $plain rev-parse HEAD" \
        "corvane --help=$(quote "$corvane" --help)"
fi
hyperfine --warmup 3 --runs "$runs" --export-json "$work/times.json" --style basic \
    -n "corvane check" "$(quote "${check[@]}")" "${baseline[@]}" \
    -n "git fetch && git rev-parse HEAD" \
    "git -C $plain fetch --quiet && git -C $plain rev-parse HEAD" \
    -n "git fetch && git checkout -f && git rev-parse HEAD" \
    "git -C $plain fetch --quiet && git -C $plain checkout --quiet -f --detach origin/master && git -C $plain rev-parse HEAD"

python3 - "$work/times.json" <<'PY'
import json, sys
results = {r["command"]: r for r in json.load(open(sys.argv[1]))["results"]}
corvane = results["corvane check"]
if "baseline check" in results:
    print(f"baseline check {results['baseline check']['mean'] * 1000:.1f} ms (median "
          f"{results['baseline check']['median'] * 1000:.1f}): {results['baseline check']['median'] / corvane['median']:.2f}x "
          f"the median of corvane check")
for name in ("git fetch && git rev-parse HEAD", "git fetch && git checkout -f && git rev-parse HEAD"):
    peer = results[name]
    print(f"corvane check {corvane['mean'] * 1000:.1f} ms ± {corvane['stddev'] * 1000:.1f} (median "
          f"{corvane['median'] * 1000:.1f}, min {corvane['min'] * 1000:.1f}) against {name} "
          f"{peer['mean'] * 1000:.1f} ms ± {peer['stddev'] * 1000:.1f} (median {peer['median'] * 1000:.1f}, "
          f"min {peer['min'] * 1000:.1f}): ratio {corvane['mean'] / peer['mean']:.2f}x by the means, "
          f"{corvane['median'] / peer['median']:.2f}x by the medians")
PY

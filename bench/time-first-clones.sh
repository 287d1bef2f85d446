# SPDX-License-Identifier: MIT
# Sourced by the first-clone benchmarks: times `corvane check` from no clone against `git clone` of
# $remote, $runs runs each into $work, and prints the ratio of the means. The argument names the way
# the remote is reached, for the summary line; a target, when given second, is printed beside it.
time_first_clones() {
  local way=$1 target=${2:-}
  hyperfine --warmup 1 --runs "$runs" --export-json "$work/clone-times.json" --style basic \
      -n "corvane first clone" --prepare "rm -rf $(printf %q "$work/corvane-clone")" \
      "$(printf '%q ' "$corvane" check --remote "$remote" --clone "$work/corvane-clone")" \
      -n "git clone" --prepare "rm -rf $(printf %q "$work/git-clone")" \
      "$(printf '%q ' git clone --quiet "$remote" "$work/git-clone")"
  python3 - "$work/clone-times.json" "$way" "$target" <<'PY'
import json, sys
r = {x["command"]: x for x in json.load(open(sys.argv[1]))["results"]}
c, g = r["corvane first clone"], r["git clone"]
target = f" (target {sys.argv[3]})" if sys.argv[3] else ""
print(f"{sys.argv[2]}: corvane first clone {c['mean'] * 1e3:.1f} ms ± {c['stddev'] * 1e3:.1f} against git clone "
      f"{g['mean'] * 1e3:.1f} ms ± {g['stddev'] * 1e3:.1f}: ratio {c['mean'] / g['mean']:.2f}x{target}")
PY
}

#!/bin/bash
# SPDX-License-Identifier: MIT
# Times the module's first clone over plain http through a proxy against `git clone` through the same
# proxy: the way a company network reaches an http remote.
#
#   bench/proxied-clone-vs-git.sh [CORVANE] [WORKDIR]
#
# CORVANE defaults to build/tools/corvane/corvane, WORKDIR to a new temporary directory.
# Workload: the list workload's remote (COUNT theme files of about 1 KB, 10,000 by default, one commit),
# served by `git http-backend` (bench/smart-http-server.py) on 127.0.0.1, both sides reaching it through
# the test suite's logging proxy named by http_proxy. Every run starts without a clone. Neither side
# reads a user or system git configuration.
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
corvane=${1:-$here/../build/tools/corvane/corvane}
work=${2:-$(mktemp -d)}
runs=${RUNS:-10}
count=${COUNT:-10000}

command -v hyperfine > /dev/null || { echo "hyperfine is needed" >&2; exit 2; }
[ -x "$corvane" ] || { echo "no corvane at $corvane (build it first)" >&2; exit 2; }
export GIT_CONFIG_NOSYSTEM=1 GIT_CONFIG_GLOBAL=/dev/null

[ -d "$work/remote" ] || python3 "$here/list-workload.py" "$work" "$count"
# Each prints its port first; the proxy then logs one line per request it passes on.
python3 "$here/smart-http-server.py" "$work" > "$work/server.out" &
server=$!
python3 "$here/../tests/support/logging-proxy.py" > "$work/proxy.log" &
proxy=$!
trap 'kill $server $proxy 2> /dev/null' EXIT
for _ in $(seq 100); do [ -s "$work/server.out" ] && [ -s "$work/proxy.log" ] && break; sleep 0.05; done
remote="http://127.0.0.1:$(head -1 "$work/server.out")/remote"
export http_proxy="http://127.0.0.1:$(head -1 "$work/proxy.log")"

# Both must end with the same files, and both must have gone through the proxy.
requests() { sleep 0.2; echo $(($(wc -l < "$work/proxy.log") - 1)); }
rm -rf "$work/corvane-clone" "$work/git-clone"
"$corvane" check --remote "$remote" --clone "$work/corvane-clone" > /dev/null
through_corvane=$(requests)
git clone --quiet "$remote" "$work/git-clone"
through_git=$(($(requests) - through_corvane))
diff -r -q -x .git "$work/corvane-clone" "$work/git-clone"
echo "$(ls "$work/git-clone/Themes" | wc -l) theme files, same in both clones;" \
     "connections through the proxy: corvane $through_corvane, git $through_git" >&2
[ "$through_corvane" -gt 0 ] && [ "$through_git" -gt 0 ] || { echo "a clone bypassed the proxy" >&2; exit 1; }
echo "load average: $(cut -d' ' -f1-3 /proc/loadavg) on $(nproc) cores" >&2

. "$here/time-first-clones.sh"
time_first_clones "through an http proxy"

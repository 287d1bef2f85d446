#!/bin/bash
# SPDX-License-Identifier: MIT
# Times the module's first clone against `git clone` of the same repository over git://.
#
#   bench/clone-vs-git.sh [CORVANE] [WORKDIR]
#
# CORVANE defaults to build/tools/corvane/corvane, WORKDIR to a new temporary directory.
# Workload: the list workload's remote (COUNT theme files of about 1 KB, 10,000 by default, one commit),
# served by `git daemon` on 127.0.0.1. Every run starts without a clone: `corvane check` clones and
# checks the commit out, `git clone` does the same. Neither reads a user or system git configuration.
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
corvane=${1:-$here/../build/tools/corvane/corvane}
work=${2:-$(mktemp -d)}
runs=${RUNS:-10}
count=${COUNT:-10000}
port=${PORT:-19418}

command -v hyperfine > /dev/null || { echo "hyperfine is needed" >&2; exit 2; }
[ -x "$corvane" ] || { echo "no corvane at $corvane (build it first)" >&2; exit 2; }
export GIT_CONFIG_NOSYSTEM=1 GIT_CONFIG_GLOBAL=/dev/null

. "$here/serve-list-workload.sh"

# Both must end with the same files.
rm -rf "$work/corvane-clone" "$work/git-clone"
"$corvane" check --remote "$remote" --clone "$work/corvane-clone" > /dev/null
git clone --quiet "$remote" "$work/git-clone"
diff -r -q -x .git "$work/corvane-clone" "$work/git-clone"
echo "$(ls "$work/git-clone/Themes" | wc -l) theme files, same in both clones" >&2
echo "load average: $(cut -d' ' -f1-3 /proc/loadavg) on $(nproc) cores" >&2

. "$here/time-first-clones.sh"
time_first_clones "over git://" "<= 1.2x"

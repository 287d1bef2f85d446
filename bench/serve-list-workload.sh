# SPDX-License-Identifier: MIT
# Sourced by the first-clone benchmarks: makes the list workload in $work (COUNT theme files, once) and
# serves it with `git daemon` on 127.0.0.1:$port until the sourcing script exits; sets $remote.
[ -d "$work/remote" ] || python3 "$here/list-workload.py" "$work" "$count"
git daemon --reuseaddr --export-all --base-path="$work" --listen=127.0.0.1 --port="$port" &
daemon=$!
trap 'kill $daemon' EXIT
for _ in $(seq 50); do git ls-remote "git://127.0.0.1:$port/remote" > /dev/null 2>&1 && break; sleep 0.1; done
remote="git://127.0.0.1:$port/remote"

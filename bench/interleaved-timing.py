#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Times commands against each other on a shared machine: one run of each per round, in a rotating
order, so the load of other work drifts over all of them alike. Prints, per command, the median and
the fastest wall time and the median CPU time (user + system of the command and its children), and
for every command after the first, the median of its per-round ratios to the first one.

    bench/interleaved-timing.py ROUNDS NAME=COMMAND [NAME=COMMAND ...]

Each COMMAND runs through /bin/sh with its output discarded; a failing run stops the timing.
"""
import os
import statistics
import subprocess
import sys
import time


def run(command):
    start = time.perf_counter()
    process = subprocess.Popen(["/bin/sh", "-c", command], stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    wall = time.perf_counter() - start
    if os.waitstatus_to_exitcode(status) != 0:
        sys.exit(f"failed: {command}")
    return wall, usage.ru_utime + usage.ru_stime


def main():
    rounds = int(sys.argv[1])
    commands = [argument.split("=", 1) for argument in sys.argv[2:]]
    walls = {name: [] for name, _ in commands}
    cpus = {name: [] for name, _ in commands}
    for warm_up in range(2):
        for _, command in commands:
            run(command)
    for round_number in range(rounds):
        shift = round_number % len(commands)
        for name, command in commands[shift:] + commands[:shift]:
            wall, cpu = run(command)
            walls[name].append(wall)
            cpus[name].append(cpu)
    first = commands[0][0]
    for name, _ in commands:
        line = (f"{name}: wall median {statistics.median(walls[name]) * 1000:.1f} ms, min "
                f"{min(walls[name]) * 1000:.1f} ms; CPU median {statistics.median(cpus[name]) * 1000:.1f} ms")
        if name != first:
            wall_ratio = statistics.median(a / b for a, b in zip(walls[first], walls[name]))
            cpu_ratio = statistics.median(a / b for a, b in zip(cpus[first], cpus[name]) if b > 0)
            line += f"; {first} / this, per round: wall {wall_ratio:.2f}x, CPU {cpu_ratio:.2f}x"
        print(line)
    with open("/proc/loadavg") as load:
        print(f"{rounds} rounds; load average now {' '.join(load.read().split()[:3])} on {os.cpu_count()} cores")


if __name__ == "__main__":
    main()

# SPDX-License-Identifier: MIT
# The updater window off screen with 10,000 rows: first paint, scrolling, memory.
corvane_add_benchmark(WindowBenchmark SOURCES WindowBenchmark.cpp)

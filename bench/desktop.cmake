# SPDX-License-Identifier: MIT
# The updater on a real X server: the loading overlay's first frame, Update All of 2,000 updates.
# Run through bench/desktop-figures.sh.
corvane_add_benchmark(DesktopBenchmark SOURCES DesktopBenchmark.cpp)

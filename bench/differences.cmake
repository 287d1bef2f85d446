# SPDX-License-Identifier: MIT
# Comparing 10,000 remote with 10,000 installed themes: the indexed comparison against the plain scan.
corvane_add_benchmark(DifferencesBenchmark SOURCES DifferencesBenchmark.cpp)

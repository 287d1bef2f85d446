# SPDX-License-Identifier: MIT
# Undoing an Update All of 2,000 themes: every new version to the Trash, every old one back.
corvane_add_benchmark(UndoBenchmark SOURCES UndoBenchmark.cpp)

// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/sources/SynchronizationProgress.h"

#include <cstdio>
#include <memory>

namespace corvane::cli {

// Shows a synchronisation's progress on one line of a terminal, rewritten in place, and wipes the
// line when it goes, so the command's own output starts on a clean line. Writes nothing at all when
// the stream is not a terminal: logs and pipes get the command's output only.
class TerminalProgress {
public:
    explicit TerminalProgress(std::FILE* stream = stderr);
    ~TerminalProgress();

    TerminalProgress(const TerminalProgress&) = delete;
    TerminalProgress& operator=(const TerminalProgress&) = delete;

    // Empty when the stream is not a terminal. May be called on another thread, and outlive this object
    // (a check given up on): what it writes after the line was wiped is the process's last output.
    ReportsSynchronizationProgress reporter();
    // Wipes the line, if anything was written, before the command prints what it found.
    void finish();

private:
    struct Line;

    std::shared_ptr<Line> m_line;
};

} // namespace corvane::cli

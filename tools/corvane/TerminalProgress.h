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

    // Empty when the stream is not a terminal. Valid while this object lives.
    ReportsSynchronizationProgress reporter();

private:
    void write(const SynchronizationProgress& progress);

    std::FILE* m_stream;
    bool m_isTerminal;
    bool m_written = false;
};

} // namespace corvane::cli

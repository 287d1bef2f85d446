// SPDX-License-Identifier: MIT
#include "TerminalProgress.h"

#include "Corvane/sources/ProgressThrottle.h"

#include <atomic>

#include <unistd.h>

namespace corvane::cli {
namespace {

// Back to the start of the line and erase it.
constexpr char clearLine[] = "\r\x1b[K";

} // namespace

struct TerminalProgress::Line {
    std::FILE* stream;
    bool isTerminal;
    std::atomic<bool> written{false};

    void write(const SynchronizationProgress& progress)
    {
        const QByteArray text = clearLine + progress.text().toUtf8();
        std::fwrite(text.constData(), 1, size_t(text.size()), stream);
        std::fflush(stream);
        written = true;
    }
};

TerminalProgress::TerminalProgress(std::FILE* stream)
    : m_line(std::make_shared<Line>(stream, isatty(fileno(stream)) == 1))
{
}

TerminalProgress::~TerminalProgress()
{
    finish();
}

void TerminalProgress::finish()
{
    if (!m_line->written.exchange(false))
        return;
    std::fputs(clearLine, m_line->stream);
    std::fflush(m_line->stream);
}

ReportsSynchronizationProgress TerminalProgress::reporter()
{
    if (!m_line->isTerminal)
        return {};
    return ProgressThrottle::wrap([line = m_line](const SynchronizationProgress& progress) { line->write(progress); });
}

} // namespace corvane::cli

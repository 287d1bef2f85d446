// SPDX-License-Identifier: MIT
#include "TerminalProgress.h"

#include "Corvane/sources/ProgressThrottle.h"

#include <unistd.h>

namespace corvane::cli {
namespace {

// Back to the start of the line and erase it.
constexpr char clearLine[] = "\r\x1b[K";

} // namespace

TerminalProgress::TerminalProgress(std::FILE* stream) : m_stream(stream), m_isTerminal(isatty(fileno(stream)) == 1) {}

TerminalProgress::~TerminalProgress()
{
    if (!m_written)
        return;
    std::fputs(clearLine, m_stream);
    std::fflush(m_stream);
}

ReportsSynchronizationProgress TerminalProgress::reporter()
{
    if (!m_isTerminal)
        return {};
    return ProgressThrottle::wrap([this](const SynchronizationProgress& progress) { write(progress); });
}

void TerminalProgress::write(const SynchronizationProgress& progress)
{
    const QByteArray line = clearLine + progress.text().toUtf8();
    std::fwrite(line.constData(), 1, size_t(line.size()), m_stream);
    std::fflush(m_stream);
    m_written = true;
}

} // namespace corvane::cli

// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/Result.h"
#include "Corvane/module/TextError.h"

#include <QString>

#include <sys/types.h>

#include <cstddef>
#include <memory>

namespace corvane {

// An open regular file, read with plain POSIX calls. Opening never blocks: a FIFO, socket or device
// standing where a theme file is expected is refused with a clear reason instead of being read.
// Failure texts say what is wrong; the caller's text names the file.
class RegularFile {
public:
    // How much a file of unknown size is first read with: far more than any real theme file.
    static constexpr std::size_t firstReadSize = 64 * 1024;

    // Follows symbolic links, like reading any file does.
    static Result<RegularFile, TextError> open(const QString& path);
    // Opens `name` relative to the directory open as `directoryDescriptor` (an absolute name as it
    // is). A file its directory listing saw as a regular file is not asked again what it is: readAll
    // learns its size by reading it, which spares a system call per file of a large directory.
    static Result<RegularFile, TextError> openAt(int directoryDescriptor, const char* name, bool listedAsRegularFile);

    RegularFile(RegularFile&& other) noexcept;
    RegularFile& operator=(RegularFile&& other) noexcept;
    ~RegularFile();

    int descriptor() const { return m_descriptor; }
    // Size and permissions as the file had them when it was opened (by open, or by openAt of a file
    // not listed as regular).
    std::size_t size() const { return m_size; }
    mode_t mode() const { return m_mode; }

    // Reads the file whole into `buffer` (grown as needed, with `padding` readable bytes after the
    // content) and gives the length read. More than `limit` bytes fail without reading them all.
    Result<std::size_t, TextError> readAll(std::unique_ptr<char[]>& buffer, std::size_t& capacity, std::size_t padding,
                                           std::size_t limit);

    // The reason texts, shared with the other file operations.
    static QString describeErrno(int code);
    static QString describeNotRegular(mode_t mode);
    static QString describeTooLarge(std::size_t size, std::size_t limit);

private:
    explicit RegularFile(int descriptor);

    static Result<RegularFile, TextError> checked(int descriptor);
    // Learns size and kind from the open file; fails for anything but a regular file.
    Result<void, TextError> learnStatus();

    int m_descriptor;
    std::size_t m_size = 0;
    mode_t m_mode = 0;
    bool m_statusKnown = false; // size and mode learnt
};

} // namespace corvane

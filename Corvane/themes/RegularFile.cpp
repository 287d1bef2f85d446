// SPDX-License-Identifier: MIT
#include "Corvane/themes/RegularFile.h"

#include "Corvane/module/Localized.h"
#include "Corvane/themes/FileNameEncoding.h"

#include <QFile>

#include <cerrno>
#include <algorithm>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {

namespace {

std::unexpected<TextError> fail(QString text)
{
    return std::unexpected(TextError{std::move(text)});
}

} // namespace

QString RegularFile::describeErrno(int code)
{
    if (code == ENOENT) {
        //% "The file doesn't exist."
        return localizedString(QT_TRID_NOOP("corvane.file.missing"), "The file doesn't exist.");
    }
    QString text = qt_error_string(code);
    if (!text.endsWith(u'.'))
        text += u'.';
    return text;
}

QString RegularFile::describeNotRegular(mode_t mode)
{
    QString kind;
    if (S_ISDIR(mode)) {
        //% "a directory"
        kind = localizedString(QT_TRID_NOOP("corvane.file.kind.directory"), "a directory");
    } else if (S_ISFIFO(mode)) {
        //% "a FIFO (named pipe)"
        kind = localizedString(QT_TRID_NOOP("corvane.file.kind.fifo"), "a FIFO (named pipe)");
    } else if (S_ISSOCK(mode)) {
        //% "a socket"
        kind = localizedString(QT_TRID_NOOP("corvane.file.kind.socket"), "a socket");
    } else if (S_ISCHR(mode) || S_ISBLK(mode)) {
        //% "a device"
        kind = localizedString(QT_TRID_NOOP("corvane.file.kind.device"), "a device");
    } else {
        //% "a special file"
        kind = localizedString(QT_TRID_NOOP("corvane.file.kind.special"), "a special file");
    }
    //% "It is not a regular file but %1."
    const QString format = localizedString(QT_TRID_NOOP("corvane.file.not-regular"), "It is not a regular file but %1.");
    return fillPlaceholders(format, {kind});
}

QString RegularFile::describeTooLarge(std::size_t size, std::size_t limit)
{
    // The words agree with the file's size; the limit, a large round figure, takes the same form.
    //% "The file has %1 bytes; a theme file may have at most %2 bytes."
    const QString format = localizedCountedString(QT_TRID_N_NOOP("corvane.file.too-large"), double(size),
                                                  "The file has %1 byte; a theme file may have at most %2 bytes.",
                                                  "The file has %1 bytes; a theme file may have at most %2 bytes.");
    return fillPlaceholders(format, {localizedNumber(double(size)), localizedNumber(double(limit))});
}

Result<RegularFile, TextError> RegularFile::open(const QString& path)
{
    return openAt(AT_FDCWD, FileNameEncoding::encodeOrEmpty(path).constData(), false);
}

Result<RegularFile, TextError> RegularFile::openAt(int directoryDescriptor, const char* name, bool listedAsRegularFile)
{
    // Non-blocking, so that a FIFO without a writer opens at once and is refused below.
    int descriptor;
    do {
        descriptor = ::openat(directoryDescriptor, name, O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    } while (descriptor < 0 && errno == EINTR);
    if (descriptor < 0) {
        const int code = errno;
        struct stat status;
        // A socket cannot be opened at all (ENXIO): say what stands there rather than the bare errno.
        if (code != ENOENT && ::fstatat(directoryDescriptor, name, &status, 0) == 0 && !S_ISREG(status.st_mode))
            return fail(describeNotRegular(status.st_mode));
        return fail(describeErrno(code));
    }
    RegularFile file(descriptor);
    if (!listedAsRegularFile) {
        if (auto known = file.learnStatus(); !known)
            return std::unexpected(std::move(known.error()));
    }
    return file;
}

Result<void, TextError> RegularFile::learnStatus()
{
    struct stat status;
    if (::fstat(m_descriptor, &status) != 0)
        return fail(describeErrno(errno));
    if (!S_ISREG(status.st_mode))
        return fail(describeNotRegular(status.st_mode));
    m_size = static_cast<std::size_t>(status.st_size);
    m_mode = status.st_mode;
    m_statusKnown = true;
    return {};
}

RegularFile::RegularFile(int descriptor) : m_descriptor(descriptor) {}

RegularFile::RegularFile(RegularFile&& other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, -1))
    , m_size(other.m_size)
    , m_mode(other.m_mode)
    , m_statusKnown(other.m_statusKnown)
{
}

RegularFile& RegularFile::operator=(RegularFile&& other) noexcept
{
    if (this != &other) {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
        m_descriptor = std::exchange(other.m_descriptor, -1);
        m_size = other.m_size;
        m_mode = other.m_mode;
        m_statusKnown = other.m_statusKnown;
    }
    return *this;
}

RegularFile::~RegularFile()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

Result<std::size_t, TextError> RegularFile::readAll(std::unique_ptr<char[]>& buffer, std::size_t& capacity,
                                                    std::size_t padding, std::size_t limit)
{
    const auto reserve = [&](std::size_t wanted) {
        if (wanted + padding <= capacity)
            return;
        const std::size_t grown = std::max(wanted + padding, capacity * 2);
        auto larger = std::make_unique_for_overwrite<char[]>(grown);
        // Earlier content is kept: this may grow in the middle of reading a file that grew.
        if (buffer && capacity > 0)
            std::memcpy(larger.get(), buffer.get(), capacity);
        buffer = std::move(larger);
        capacity = grown;
    };
    const auto readSome = [&](std::size_t offset, std::size_t count) {
        ssize_t read;
        do {
            read = ::read(m_descriptor, buffer.get() + offset, count);
        } while (read < 0 && errno == EINTR);
        return read;
    };

    std::size_t length = 0;
    if (!m_statusKnown) {
        // A file listed as regular: one read into the buffer usually takes it whole, and a short read
        // of a regular file is its end. Only a file that fills the buffer is asked for its size.
        reserve(std::max<std::size_t>(capacity > padding ? capacity - padding : 0, firstReadSize));
        const std::size_t room = capacity - padding;
        const ssize_t first = readSome(0, room);
        if (first >= 0 && static_cast<std::size_t>(first) < room) {
            if (static_cast<std::size_t>(first) > limit)
                return fail(describeTooLarge(static_cast<std::size_t>(first), limit));
            std::memset(buffer.get() + first, 0, padding);
            return static_cast<std::size_t>(first);
        }
        const int code = errno;
        // Whatever the listed file is, or whatever replaced it since, its status tells.
        if (auto known = learnStatus(); !known)
            return std::unexpected(std::move(known.error()));
        if (first < 0)
            return fail(describeErrno(code));
        length = room;
    }

    // Refuse an oversized file before reading any (more) of it: a sparse 1 GB file costs nothing.
    if (m_size > limit)
        return fail(describeTooLarge(m_size, limit));

    // Ask for one byte more than the size: a short read of exactly the size means the end of the
    // file, without a further read call; a file that grew since it was opened is read on.
    std::size_t wanted = std::max(m_size, length) + 1;
    reserve(wanted);
    while (true) {
        const ssize_t count = readSome(length, wanted - length);
        if (count < 0)
            return fail(describeErrno(errno));
        if (count == 0)
            break;
        length += static_cast<std::size_t>(count);
        if (length > limit)
            return fail(describeTooLarge(length, limit));
        if (length == m_size && length < wanted)
            break;
        if (length == wanted) {
            wanted = std::min(wanted * 2, limit + 1);
            if (wanted <= length)
                wanted = length + 1;
            reserve(wanted);
        }
    }
    std::memset(buffer.get() + length, 0, padding);
    return length;
}

} // namespace corvane

#include "Corvane/themes/RegularFile.h"

#include "Corvane/module/Localized.h"

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
    //% "It is not a regular file but %@."
    const QString format = localizedString(QT_TRID_NOOP("corvane.file.not-regular"), "It is not a regular file but %@.");
    return fillPlaceholders(format, {kind});
}

QString RegularFile::describeTooLarge(std::size_t size, std::size_t limit)
{
    //% "The file has %@ bytes; a theme file may have at most %@ bytes."
    const QString format = localizedString(QT_TRID_NOOP("corvane.file.too-large"),
                                           "The file has %@ bytes; a theme file may have at most %@ bytes.");
    return fillPlaceholders(format, {QString::number(size), QString::number(limit)});
}

Result<RegularFile, TextError> RegularFile::open(const QString& path)
{
    const QByteArray encoded = QFile::encodeName(path);
    // Non-blocking, so that a FIFO without a writer opens at once and is refused below.
    int descriptor;
    do {
        descriptor = ::open(encoded.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    } while (descriptor < 0 && errno == EINTR);
    if (descriptor < 0) {
        const int code = errno;
        struct stat status;
        // A socket cannot be opened at all (ENXIO): say what stands there rather than the bare errno.
        if (code != ENOENT && ::stat(encoded.constData(), &status) == 0 && !S_ISREG(status.st_mode))
            return fail(describeNotRegular(status.st_mode));
        return fail(describeErrno(code));
    }
    struct stat status;
    if (::fstat(descriptor, &status) != 0) {
        const int code = errno;
        ::close(descriptor);
        return fail(describeErrno(code));
    }
    if (!S_ISREG(status.st_mode)) {
        ::close(descriptor);
        return fail(describeNotRegular(status.st_mode));
    }
    return RegularFile(descriptor, static_cast<std::size_t>(status.st_size), status.st_mode);
}

RegularFile::RegularFile(int descriptor, std::size_t size, mode_t mode)
    : m_descriptor(descriptor), m_size(size), m_mode(mode)
{
}

RegularFile::RegularFile(RegularFile&& other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, -1)), m_size(other.m_size), m_mode(other.m_mode)
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
    // Refuse an oversized file before reading any of it: a sparse 1 GB file costs nothing.
    if (m_size > limit)
        return fail(describeTooLarge(m_size, limit));

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

    // Ask for one byte more than the size: a short read of exactly the size means the end of the
    // file, without a further read call; a file that grew since it was opened is read on.
    std::size_t wanted = m_size + 1;
    std::size_t length = 0;
    reserve(wanted);
    while (true) {
        const ssize_t count = ::read(m_descriptor, buffer.get() + length, wanted - length);
        if (count < 0) {
            if (errno == EINTR)
                continue;
            return fail(describeErrno(errno));
        }
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

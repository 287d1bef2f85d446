// SPDX-License-Identifier: MIT
#include "Corvane/undo/UndoLastInstall.h"

#include "Corvane/module/Localized.h"
#include "Corvane/themes/DeferredSync.h"
#include "Corvane/themes/Descriptor.h"
#include "Corvane/themes/FileNameEncoding.h"
#include "Corvane/themes/InstalledDirectoryLock.h"
#include "Corvane/themes/RegularFile.h"
#include "Corvane/themes/Trash.h"
#include "Corvane/undo/InstallRecordFile.h"

#include <QCryptographicHash>
#include <QDateTime>

#include <cerrno>
#include <cstdio>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {
namespace {

QString shown(const QByteArray& path)
{
    return FileNameEncoding::displayed(FileNameEncoding::decode(path));
}

std::unexpected<TextError> refuse(const char* id, const char* english, std::initializer_list<QString> arguments)
{
    return std::unexpected(TextError{fillPlaceholders(localizedString(id, english), arguments)});
}

std::unexpected<TextError> nothingToUndo(const QByteArray& directory)
{
    //% "There is no install to undo in '%1'."
    return refuse(QT_TRID_NOOP("corvane.undo.nothing"), "There is no install to undo in '%1'.", {shown(directory)});
}

// The SHA-256 of a regular file's bytes; nothing for anything else or a file that cannot be read.
std::optional<QByteArray> digestOf(const QByteArray& path)
{
    Descriptor file(::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    struct stat status;
    if (file.get() < 0 || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    QCryptographicHash digest(QCryptographicHash::Sha256);
    char chunk[64 * 1024];
    while (true) {
        const ssize_t count = ::read(file.get(), chunk, sizeof chunk);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return std::nullopt;
        if (count == 0)
            return digest.result();
        digest.addData(QByteArrayView(chunk, count));
    }
}

bool exists(const QByteArray& path)
{
    struct stat status;
    return ::lstat(path.constData(), &status) == 0;
}

// Moves the item back without ever replacing what may have appeared at its place meanwhile.
int moveBack(const QByteArray& from, const QByteArray& to)
{
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
    // A file system without the no-replace rename: a hard link fails as well when the place is taken.
    if (::link(from.constData(), to.constData()) != 0)
        return errno;
    ::unlink(from.constData());
    return 0;
}

// An update undone in one step: the version the batch wrote and the one it replaced trade places, so
// the file is never missing and the written version lies in the Trash under the replaced one's info
// file, which names the same original path. Only its deletion time is brought up to date. False when
// the file system cannot exchange two names.
bool exchangeWithTrashed(const QByteArray& destination, const QByteArray& trashedItem)
{
    if (::renameat2(AT_FDCWD, trashedItem.constData(), AT_FDCWD, destination.constData(), RENAME_EXCHANGE) != 0)
        return false;
    Descriptor info(::open(Trash::infoFileOf(trashedItem).constData(), O_RDWR | O_CLOEXEC | O_NOFOLLOW));
    char content[16 * 1024];
    const ssize_t length = info.get() < 0 ? -1 : ::pread(info.get(), content, sizeof content, 0);
    if (length <= 0)
        return true;
    const QByteArrayView text(content, length);
    const qsizetype start = text.indexOf("\nDeletionDate=");
    const QByteArray now = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss")).toLatin1();
    // The same length as what this module writes; another program's form of the date is left alone.
    if (start >= 0 && start + 14 + now.size() < length && text[start + 14 + now.size()] == '\n')
        [[maybe_unused]] const ssize_t written = ::pwrite(info.get(), now.constData(), std::size_t(now.size()), start + 14);
    return true;
}

struct Pending {
    qsizetype index;
    QByteArray destination;
    InstallRecordFile::Copy copy;
};

// Why a step cannot be undone as the record says, or nothing when it can.
std::optional<TextError> checkUndoable(const Pending& step)
{
    if (!step.copy.digest.isEmpty() && digestOf(step.destination) != step.copy.digest) {
        //% "'%1' has changed since it was installed, so the install cannot be undone. Nothing was changed."
        return refuse(QT_TRID_NOOP("corvane.undo.file-changed"),
                      "'%1' has changed since it was installed, so the install cannot be undone. Nothing was changed.",
                      {shown(step.destination)})
            .error();
    }
    if (step.copy.trashedItem.isEmpty())
        return std::nullopt;
    if (!exists(step.copy.trashedItem) || !exists(Trash::infoFileOf(step.copy.trashedItem))) {
        //% "The earlier version of '%1' is no longer in the Trash, so the install cannot be undone. Nothing was changed."
        return refuse(QT_TRID_NOOP("corvane.undo.trash-entry-gone"),
                      "The earlier version of '%1' is no longer in the Trash, so the install cannot be undone. "
                      "Nothing was changed.",
                      {shown(step.destination)})
            .error();
    }
    if (step.copy.digest.isEmpty() && exists(step.destination)) {
        //% "Something new stands at '%1', where its earlier version would go back, so the install cannot be undone. Nothing was changed."
        return refuse(QT_TRID_NOOP("corvane.undo.in-the-way"),
                      "Something new stands at '%1', where its earlier version would go back, so the install cannot "
                      "be undone. Nothing was changed.",
                      {shown(step.destination)})
            .error();
    }
    return std::nullopt;
}

void appendUndone(int record, const QByteArray& folder, qsizetype index)
{
    const QByteArray line = "undone " + QByteArray::number(index) + '\n';
    if (::write(record, line.constData(), std::size_t(line.size())) == line.size() && !DeferredSync::defer(folder))
        ::fdatasync(record);
}

} // namespace

Result<UndoneInstall, TextError> undoLastInstall(const QUrl& installedDirectory, const ReportsUndoProgress& progress)
{
    QByteArray directory = FileNameEncoding::encodeOrEmpty(installedDirectory.toLocalFile());
    while (directory.size() > 1 && directory.endsWith('/'))
        directory.chop(1);
    if (directory.isEmpty())
        return nothingToUndo(directory);

    // Installs into the directory wait, so that nothing changes between the checks and the moves.
    const InstalledDirectoryLock lock(directory, InstalledDirectoryLock::Wait::untilFree);
    const QByteArray folder = InstallRecordFile::folderOf(directory);
    const QByteArray recordPath = InstallRecordFile::newestIn(folder);
    if (recordPath.isEmpty())
        return nothingToUndo(directory);

    Descriptor record(::open(recordPath.constData(), O_RDWR | O_APPEND | O_CLOEXEC | O_NOFOLLOW));
    std::unique_ptr<char[]> buffer;
    std::size_t capacity = 0;
    std::optional<InstallRecordFile::Contents> contents;
    if (auto file = RegularFile::openAt(AT_FDCWD, recordPath.constData(), false); file && record.get() >= 0) {
        if (const auto length = file->readAll(buffer, capacity, 0, 64 * 1024 * 1024))
            contents = InstallRecordFile::parse(QByteArray(buffer.get(), qsizetype(*length)));
    }
    if (!contents) {
        //% "The record of the last install in '%1' cannot be read, so the install cannot be undone."
        return refuse(QT_TRID_NOOP("corvane.undo.record-unreadable"),
                      "The record of the last install in '%1' cannot be read, so the install cannot be undone.",
                      {shown(directory)});
    }
    if (contents->interrupted) {
        //% "The last install stopped while replacing '%1', so it cannot be undone. Its earlier version may be in the Trash."
        return refuse(QT_TRID_NOOP("corvane.undo.interrupted"),
                      "The last install stopped while replacing '%1', so it cannot be undone. Its earlier version "
                      "may be in the Trash.",
                      {shown(directory + '/' + *contents->interrupted)});
    }

    // The last copy first, so that a file written twice comes back as it was before the batch.
    QList<Pending> steps;
    for (qsizetype index = contents->copies.size() - 1; index >= 0; --index) {
        const InstallRecordFile::Copy& copy = contents->copies[index];
        if (!copy.undone && (!copy.digest.isEmpty() || !copy.trashedItem.isEmpty()))
            steps.append({index, directory + '/' + copy.name, copy});
    }
    if (steps.isEmpty()) {
        ::unlink(recordPath.constData());
        return nothingToUndo(directory);
    }
    for (const Pending& step : steps) {
        // Nothing has moved yet, but a receiver may show that the undo is under way.
        if (progress)
            progress(0, steps.size());
        if (auto refusal = checkUndoable(step))
            return std::unexpected(std::move(*refusal));
    }

    // Each step is noted as done once done: a step that fails leaves a record a retry continues from.
    const DeferredSync durability;
    UndoneInstall undone;
    qsizetype done = 0;
    const auto advance = [&] {
        if (progress)
            progress(done, steps.size());
        ++done;
    };
    for (const Pending& step : steps) {
        advance();
        const auto stopped = [&](const QString& reason) {
            //% "Undoing the install stopped at '%1': %2"
            return refuse(QT_TRID_NOOP("corvane.undo.failed"), "Undoing the install stopped at '%1': %2",
                          {shown(step.destination), reason});
        };
        if (!step.copy.digest.isEmpty() && !step.copy.trashedItem.isEmpty()
            && exchangeWithTrashed(step.destination, step.copy.trashedItem)) {
            undone.append({UndoneFile::Change::movedToTrash, shown(step.destination)});
            undone.append({UndoneFile::Change::restored, shown(step.destination)});
            appendUndone(record.get(), folder, step.index);
            continue;
        }
        if (!step.copy.digest.isEmpty()) {
            if (auto trashed = Trash::moveItem(step.destination); !trashed)
                return stopped(trashed.error().text);
            undone.append({UndoneFile::Change::movedToTrash, shown(step.destination)});
        }
        if (!step.copy.trashedItem.isEmpty()) {
            if (const int code = moveBack(step.copy.trashedItem, step.destination); code != 0)
                return stopped(RegularFile::describeErrno(code));
            ::unlink(Trash::infoFileOf(step.copy.trashedItem).constData());
            undone.append({UndoneFile::Change::restored, shown(step.destination)});
        }
        appendUndone(record.get(), folder, step.index);
    }
    advance();
    ::unlink(recordPath.constData());
    return undone;
}

} // namespace corvane

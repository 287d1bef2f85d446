// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QUrl>

#include <optional>

#include <sys/types.h>

namespace corvane {

// Keeps the record of one install batch (one row, Update All, or a run of `corvane install`) beside
// the installed themes, so that the batch can be undone later, by this process or another one.
//
// While one lives on this thread, every copy the file manager makes into its directory is noted as
// it happens: before the file it replaces goes to the Trash, and again once the new file is in
// place, with the digest of the bytes written and where the replaced file went. A kill between the
// two leaves a record that undo refuses, naming the file, rather than one that silently forgets it.
// The record is made with the batch's first copy and replaces the directory's previous one once the
// batch has changed a file: only the last batch can be undone. A batch that changes nothing leaves
// the previous record as it is.
class InstallRecord {
public:
    explicit InstallRecord(const QUrl& installedDirectory);
    ~InstallRecord();

    InstallRecord(const InstallRecord&) = delete;
    InstallRecord& operator=(const InstallRecord&) = delete;

    // The record that notes copies into `directory` on this thread, if any.
    static InstallRecord* activeFor(const QByteArray& directory);

    // Before the file at `name` goes to the Trash.
    void noteReplacing(const QByteArray& name);
    // After the copy ended: `digest` of the bytes now at `name` (empty when nothing was written) and
    // where the file it replaced lies in the Trash (empty when none).
    void noteCopied(const QByteArray& name, const QByteArray& digest, const QByteArray& trashedItem);

private:
    bool append(const QByteArray& line);

    QByteArray m_directory;
    QByteArray m_name;
    bool m_changed = false;
    std::optional<std::pair<dev_t, ino_t>> m_identity;
    int m_descriptor = -1;
    bool m_broken = false;
};

} // namespace corvane

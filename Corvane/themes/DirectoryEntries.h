// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_export.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>
#include <QUrl>

namespace corvane {

// The entries of one listed directory as the file system names them: each a path relative to that
// directory (a plain file name when the file manager lists it) or an absolute path, in the file
// system's own encoding. All names share one buffer, so a directory of ten thousand themes costs a
// couple of allocations instead of a URL per entry.
class CORVANE_EXPORT DirectoryEntries {
public:
    struct Entry {
        // Followed by a NUL byte in memory, so it can be handed to the system as it is.
        QByteArrayView encodedName;
        // The listing itself saw a regular file (not a link, FIFO or anything else): reading it
        // needs no further question to the file system about what it is.
        bool listedAsRegularFile;
    };

    void reserve(qsizetype count);
    // A name with a NUL byte cannot name a file and is not kept.
    void append(QByteArrayView encodedName, bool listedAsRegularFile);

    qsizetype size() const { return m_slots.size(); }
    Entry operator[](qsizetype index) const;

    // The local path of a listed directory with a "/" at its end: what an entry's name is relative to.
    static QString pathPrefix(const QUrl& directory);
    // The local path of one entry of the directory whose pathPrefix is given.
    static QString localPath(const QString& prefix, QByteArrayView encodedName);

private:
    struct Slot {
        qsizetype offset;
        qsizetype length;
        bool listedAsRegularFile;
    };
    QByteArray m_names; // every name followed by a NUL byte
    QList<Slot> m_slots;
};

} // namespace corvane

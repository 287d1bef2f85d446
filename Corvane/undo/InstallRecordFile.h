// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>

#include <optional>

namespace corvane {

// The layout of the install records in an installed-themes directory: a hidden folder of its own,
// which the theme reader skips as it skips every directory, holding one file per batch, named so
// that the newest sorts last. Each line is one step; file names and paths are percent-encoded bytes.
//
//   corvane-install-record 1
//   replacing NAME                  the file at NAME is about to go to the Trash
//   copied NAME DIGEST TRASHED      NAME now holds bytes with that SHA-256 ("-": nothing written),
//                                   the file it replaced lies at TRASHED ("-": none)
//   undone INDEX                    the INDEX-th copied line has been undone
class InstallRecordFile {
public:
    static constexpr const char* folderName = ".corvane-undo";
    static constexpr const char* suffix = ".record";
    static constexpr const char* header = "corvane-install-record 1";

    struct Copy {
        QByteArray name;
        QByteArray digest;      // empty: nothing written
        QByteArray trashedItem; // empty: nothing replaced
        bool undone = false;
    };

    // What a record says. `interrupted` names a file whose copy began but never ended.
    struct Contents {
        QList<Copy> copies;
        std::optional<QByteArray> interrupted;
    };

    static QByteArray folderOf(const QByteArray& directory) { return directory + '/' + folderName; }
    // The newest record's path in the folder; empty when there is none.
    static QByteArray newestIn(const QByteArray& folder);
    // Nothing when the bytes are not a record.
    static std::optional<Contents> parse(const QByteArray& bytes);

    static QByteArray field(const QByteArray& value)
    {
        return value.isEmpty() ? QByteArray("-") : value == "-" ? QByteArray("%2D") : value.toPercentEncoding("/");
    }
    static QByteArray unfield(const QByteArray& text) { return text == "-" ? QByteArray() : QByteArray::fromPercentEncoding(text); }
};

} // namespace corvane

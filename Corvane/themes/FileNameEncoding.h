// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_export.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <optional>

namespace corvane {

// Turns file names as the system stores them (bytes, usually UTF-8) into text and back without losing
// a byte. Qt decodes a byte that is not part of valid UTF-8 as U+FFFD, so a theme file named
// "bad\xff.theme.json" would be looked for under another name. Here each such byte becomes one
// unpaired low surrogate (U+DC80 to U+DCFF), which no valid UTF-8 can produce, and goes back to the
// same byte when the name is handed to the system.
class FileNameEncoding {
public:
    static QString decode(QByteArrayView encoded);
    // Nothing when the text holds an unpaired surrogate other than those decode makes: no byte
    // sequence names such a file, and writing U+FFFD instead would name another one.
    static std::optional<QByteArray> encode(QStringView name);
    // The bytes for a system call; a text that cannot be encoded gives a name that cannot exist
    // (empty), so the call fails with ENOENT instead of touching another file.
    static QByteArray encodeOrEmpty(QStringView name);

    // The text for a message: every byte kept as an escape is shown as \xHH, the rest unchanged.
    static QString displayed(QStringView name);
};

} // namespace corvane

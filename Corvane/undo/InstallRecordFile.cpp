// SPDX-License-Identifier: MIT
#include "Corvane/undo/InstallRecordFile.h"

#include <memory>

#include <dirent.h>

namespace corvane {

QByteArray InstallRecordFile::newestIn(const QByteArray& folder)
{
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(::opendir(folder.constData()), ::closedir);
    if (!listing)
        return {};
    QByteArray newest;
    while (const dirent* entry = ::readdir(listing.get())) {
        const QByteArray name(entry->d_name);
        if (name.endsWith(suffix) && name > newest)
            newest = name;
    }
    return newest.isEmpty() ? QByteArray() : folder + '/' + newest;
}

std::optional<InstallRecordFile::Contents> InstallRecordFile::parse(const QByteArray& bytes)
{
    const QList<QByteArray> lines = bytes.split('\n');
    if (lines.isEmpty() || lines.first() != header)
        return std::nullopt;
    Contents contents;
    for (qsizetype index = 1; index < lines.size(); ++index) {
        const QList<QByteArray> fields = lines[index].split(' ');
        const QByteArray& step = fields.first();
        if (step == "replacing" && fields.size() == 2) {
            if (!contents.interrupted)
                contents.interrupted = unfield(fields[1]);
        } else if (step == "copied" && fields.size() == 4) {
            Copy copy{unfield(fields[1]), QByteArray::fromHex(unfield(fields[2])), unfield(fields[3])};
            if (contents.interrupted == copy.name)
                contents.interrupted.reset();
            contents.copies.append(std::move(copy));
        } else if (step == "undone" && fields.size() == 2) {
            bool isNumber = false;
            const qsizetype copy = fields[1].toLongLong(&isNumber);
            if (!isNumber || copy < 0 || copy >= contents.copies.size())
                return std::nullopt;
            contents.copies[copy].undone = true;
        } else if (!(step.isEmpty() && index == lines.size() - 1)) {
            return std::nullopt; // only the last line may be empty: the one after the final newline
        }
    }
    return contents;
}

} // namespace corvane

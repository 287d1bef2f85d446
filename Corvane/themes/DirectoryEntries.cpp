// SPDX-License-Identifier: MIT
#include "Corvane/themes/DirectoryEntries.h"

#include "Corvane/themes/FileNameEncoding.h"

#include <cstring>

namespace corvane {

void DirectoryEntries::reserve(qsizetype count)
{
    m_slots.reserve(count);
    m_names.reserve(count * 32);
}

void DirectoryEntries::append(QByteArrayView encodedName, bool listedAsRegularFile)
{
    if (encodedName.contains('\0'))
        return;
    m_slots.append(Slot{m_names.size(), encodedName.size(), listedAsRegularFile});
    m_names.append(encodedName);
    m_names.append('\0');
}

DirectoryEntries::Entry DirectoryEntries::operator[](qsizetype index) const
{
    const Slot& slot = m_slots[index];
    return Entry{QByteArrayView(m_names.constData() + slot.offset, slot.length), slot.listedAsRegularFile};
}

QString DirectoryEntries::pathPrefix(const QUrl& directory)
{
    QString prefix = directory.toLocalFile();
    if (!prefix.endsWith(u'/'))
        prefix += u'/';
    return prefix;
}

QString DirectoryEntries::localPath(const QString& prefix, QByteArrayView encodedName)
{
    if (encodedName.startsWith('/'))
        return FileNameEncoding::decode(encodedName);
    // Most names are ASCII: widened in place they need no conversion of their own.
    QString path(prefix.size() + encodedName.size(), Qt::Uninitialized);
    char16_t* out = reinterpret_cast<char16_t*>(path.data());
    std::memcpy(out, prefix.utf16(), static_cast<std::size_t>(prefix.size()) * sizeof(char16_t));
    out += prefix.size();
    for (const char byte : encodedName) {
        if (static_cast<unsigned char>(byte) >= 0x80)
            return prefix + FileNameEncoding::decode(encodedName);
        *out++ = static_cast<char16_t>(byte);
    }
    return path;
}

} // namespace corvane

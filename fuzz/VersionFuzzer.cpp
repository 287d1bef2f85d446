// SPDX-License-Identifier: MIT
// Version texts come from theme files of a remote repository: any bytes, read as UTF-8. Reading one
// never crashes, a version read from text is never negative, and printing it reads back the same.

#include "Version/Version.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using corvane::Version;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto version = Version::fromString(text);
    if (!version) {
        if (version.error().message != QLatin1StringView("Version.init(string:) expects to find at least one number"))
            std::abort();
        return 0;
    }
    if (version->major() < 0 || version->minor() < 0 || version->patch() < 0)
        std::abort();
    const auto again = Version::fromString(version->toString());
    if (!again || *again != *version)
        std::abort();
    return 0;
}

// SPDX-License-Identifier: MIT
#include "Corvane/module/UrlText.h"

namespace corvane {

QString urlText(const QUrl& url)
{
    return url.toString(QUrl::RemoveUserInfo | QUrl::FullyEncoded);
}

} // namespace corvane

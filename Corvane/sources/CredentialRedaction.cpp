// SPDX-License-Identifier: MIT
#include "Corvane/sources/CredentialRedaction.h"

#include "Corvane/module/UrlText.h"

#include <QRegularExpression>

namespace corvane {

QString removeCredentials(const QString& text, const QUrl& url)
{
    QString result = text;
    // The user information as the URL was written, percent-encoding and all, and decoded.
    if (!url.userInfo().isEmpty()) {
        QString decoded = url.userName(QUrl::FullyDecoded);
        if (url.password(QUrl::FullyDecoded).size() > 0)
            decoded += u':' + url.password(QUrl::FullyDecoded);
        for (const QString& userInfo : {url.userInfo(QUrl::FullyEncoded), decoded}) {
            if (!userInfo.isEmpty())
                result.replace(userInfo + u'@', QString());
        }
    }
    // Any other "scheme://user:password@" left in the text.
    static const QRegularExpression inUrl(QStringLiteral(R"(([A-Za-z][A-Za-z0-9+.\-]*://)[^\s/'"]*@)"));
    result.replace(inUrl, QStringLiteral("\\1"));
    return result;
}

QString displayUrl(const QUrl& url)
{
    return urlText(url);
}

} // namespace corvane

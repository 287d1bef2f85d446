// SPDX-License-Identifier: MIT
#include "Corvane/sources/HttpProxyLookup.h"

#include "Corvane/sources/GitHandles.h"

#include <QList>

namespace corvane {
namespace {

// A configured value, or nullopt when the key is not set (a set but empty value is returned as such).
std::optional<QString> configured(git_config* config, const QByteArray& key)
{
    GitBuffer value;
    if (git_config_get_string_buf(&value.buffer, config, key.constData()) < 0) {
        git_error_clear();
        return std::nullopt;
    }
    return QString::fromUtf8(value.buffer.ptr, qsizetype(value.buffer.size));
}

ConfigHandle configOf(git_repository* repository)
{
    git_config* raw = nullptr;
    const int code = repository ? git_repository_config_snapshot(&raw, repository) : git_config_open_default(&raw);
    if (code < 0) {
        git_error_clear();
        return nullptr;
    }
    return ConfigHandle(raw);
}

std::optional<QString> configuredProxy(git_config* config, const QByteArray& remoteName, const QUrl& url)
{
    if (!remoteName.isEmpty()) {
        if (auto value = configured(config, "remote." + remoteName + ".proxy"))
            return value;
    }
    // http.<url>.proxy, from the whole URL down to its host: the most specific setting wins.
    QUrl lookup = url.adjusted(QUrl::RemoveUserInfo | QUrl::RemoveQuery | QUrl::RemoveFragment);
    while (true) {
        if (auto value = configured(config, "http." + lookup.toString(QUrl::FullyEncoded).toUtf8() + ".proxy"))
            return value;
        QString path = lookup.path();
        if (path.isEmpty())
            break;
        // "/a/b" becomes "/a/", which becomes "/a", and so on down to "".
        if (path.endsWith(u'/'))
            path.chop(1);
        else
            path.truncate(path.lastIndexOf(u'/') + 1);
        lookup.setPath(path);
    }
    return configured(config, "http.proxy");
}

QByteArray environment(const char* lower, const char* upper)
{
    const QByteArray value = qgetenv(lower);
    return value.isEmpty() ? qgetenv(upper) : value;
}

} // namespace

std::optional<QUrl> HttpProxyLookup::forRemote(git_repository* repository, const QByteArray& remoteName,
                                               const QUrl& url)
{
    QString proxy;
    const ConfigHandle config = configOf(repository);
    if (auto value = config ? configuredProxy(config.get(), remoteName, url) : std::nullopt) {
        proxy = *value;
    } else {
        const bool https = url.scheme() == QLatin1String("https");
        proxy = QString::fromLocal8Bit(https ? environment("https_proxy", "HTTPS_PROXY")
                                             : environment("http_proxy", "HTTP_PROXY"));
        if (!proxy.isEmpty() && isExempt(url, environment("no_proxy", "NO_PROXY")))
            return std::nullopt;
    }
    if (proxy.trimmed().isEmpty())
        return std::nullopt;
    return proxyUrl(proxy.trimmed());
}

bool HttpProxyLookup::isExempt(const QUrl& url, const QByteArray& noProxy)
{
    const QString host = url.host().toLower();
    const int port = url.port(url.scheme() == QLatin1String("https") ? 443 : 80);
    const QList<QByteArray> entries = noProxy.simplified().replace(' ', ',').split(',');
    for (QByteArray entry : entries) {
        entry = entry.trimmed().toLower();
        if (entry.isEmpty())
            continue;
        if (entry == "*")
            return true;
        // "host:port" applies to that port alone.
        if (const qsizetype colon = entry.lastIndexOf(':'); colon > 0 && !entry.endsWith(']')
            && entry.indexOf(':') == colon) {
            if (entry.mid(colon + 1).toInt() != port)
                continue;
            entry.truncate(colon);
        }
        if (entry.startsWith("*."))
            entry.remove(0, 1);
        const QString name = QString::fromUtf8(entry.startsWith('.') ? entry.mid(1) : entry);
        if (host == name || host.endsWith(u'.' + name))
            return true;
    }
    return false;
}

QUrl HttpProxyLookup::proxyUrl(const QString& configured)
{
    QUrl url(configured.contains(QLatin1String("://")) ? configured : QLatin1String("http://") + configured,
             QUrl::TolerantMode);
    if (url.port() < 0 && url.scheme() == QLatin1String("http"))
        url.setPort(80);
    return url;
}

} // namespace corvane

// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>

namespace corvane {

// Messages may quote URLs; a password must never reach a user's screen or a host's log. Removes the
// user:password part of every URL in text, and the user information of url wherever it appears.
QString removeCredentials(const QString& text, const QUrl& url = {});

// A URL as messages show it (see urlText): in full, scheme included, without user information.
QString displayUrl(const QUrl& url);

} // namespace corvane

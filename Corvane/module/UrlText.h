// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>

namespace corvane {

// A URL as every message shows it: in full, scheme included, fully percent-encoded and without user
// information. Qt's default text decodes spaces but keeps "%25" and "%23", a mixture that names no
// file and no URL; this form pastes back as the same URL into a browser, a file manager or git.
QString urlText(const QUrl& url);

} // namespace corvane

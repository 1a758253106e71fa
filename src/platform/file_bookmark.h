// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QUrl>
#include <optional>

#include "base/result.h"

namespace quillo {

/// Bytes by which a file is found again: its path, device and file number, so that a file that
/// was renamed in its folder still resolves. NotFound when the file does not exist.
[[nodiscard]] Result<QByteArray> makeFileBookmark(const QUrl& url);

/// The file's present address. Malformed for bytes that are no bookmark, NotFound when the file
/// is gone. Reads at most one folder.
[[nodiscard]] Result<QUrl> resolveFileBookmark(const QByteArray& bookmark);

/// One spelling for one file (RFC 8089): scheme and path only, percent-encoding as needed and no
/// more, dot segments resolved, no trailing slash. An address that is no local file is none.
[[nodiscard]] std::optional<QUrl> normalizedFileUrl(const QUrl& url);

}  // namespace quillo

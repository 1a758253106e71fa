// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>
#include <optional>

namespace quillo {

/// The address that a whole text is; none when the text holds white space or control characters
/// anywhere (both ends included) or does not parse (RFC 3986, read tolerantly as people type it).
[[nodiscard]] std::optional<QUrl> parseWholeUrl(const QString& text);

/// True when the whole text is an address whose scheme is http or https.
[[nodiscard]] bool isWebLink(const QString& text);

}  // namespace quillo

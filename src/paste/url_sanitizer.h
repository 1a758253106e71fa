// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace quillo {

/// A URL (RFC 3986) without the query items by which visits are tracked. Everything else stays
/// character for character: the spelling of the host, user information, port, percent-encodings,
/// "+", the order and repetition of items, empty values, the fragment. A query of which nothing is
/// left goes with its question mark. A text that is no URL as a whole comes back as it is.
[[nodiscard]] QString sanitizedUrl(const QString& text);

}  // namespace quillo

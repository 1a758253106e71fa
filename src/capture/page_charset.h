// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace quillo {

/// None when the bytes are not UTF-8; a character that is cut at the end is left out.
[[nodiscard]] std::optional<QString> decodeUtf8(const QByteArray& bytes);

/// The charset that a page names: by a byte-order mark of UTF-16, in the Content-Type it came
/// with, or in a meta element within its first 4 KiB. Empty when it names none.
[[nodiscard]] QByteArray namedCharset(const QByteArray& bytes, const QByteArray& contentType);

/// The bytes in a charset that goes by one of the names of the web or of ICU; bytes without a
/// meaning become U+FFFD. None when nobody knows the name.
[[nodiscard]] std::optional<QString> decodeCharset(const QByteArray& bytes,
                                                   const QByteArray& charset);

}  // namespace quillo

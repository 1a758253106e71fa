// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <optional>

namespace quillo {

/// What a web page says about itself for a preview. All of it is hostile input: every function is
/// linear in the page's length.

/// The page as text: UTF-8, else ASCII, else the charset that it names (byte-order mark,
/// Content-Type, a meta element within its first 4 KiB). A character that is cut at the end is
/// left out. None when none of them fits.
[[nodiscard]] std::optional<QString> decodePage(const QByteArray& bytes,
                                                const QByteArray& contentType);

/// The content of the first meta element whose property, or else whose name, is `key`; an element
/// may have its content before or after. Case does not matter, quotation marks are double. The
/// elementary character references are resolved; what is empty counts as missing. Exactly what
/// these four patterns find, in their order:
///
///     <meta[^>]+property="KEY"[^>]+content="([^"]*)"
///     <meta[^>]+content="([^"]*)"[^>]+property="KEY"
///
/// and the same with name.
[[nodiscard]] std::optional<QString> extractMeta(const QString& html, QLatin1StringView key);

/// The text of the first title element, trimmed, its character references left as they are: what
/// `<title[^>]*>([^<]+)</title>` finds.
[[nodiscard]] std::optional<QString> extractTitle(const QString& html);

/// The address that a page gives for its picture: as it stands when it has a scheme, else relative
/// to the page.
[[nodiscard]] std::optional<QUrl> resolveImageUrl(const QString& text, const QUrl& page);

}  // namespace quillo

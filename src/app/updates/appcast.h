// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <optional>
#include <vector>

#include "base/result.h"

namespace quillo {

/// One version that a feed offers for Linux.
struct AppcastItem {
    QString version;         ///< What versions are compared by.
    QString displayVersion;  ///< What a person is shown; the same unless the feed says otherwise.
    QUrl url;
    qint64 sizeBytes = 0;
    QByteArray signature;  ///< 64 bytes; Ed25519 over the file (RFC 8032).
};

inline constexpr qint64 kLargestFeedBytes = 1024LL * 1024;
/// It is mapped into memory while its signature is checked.
inline constexpr qint64 kLargestUpdateBytes = 256LL * 1024 * 1024;

/// Reads a feed in the appcast format: RSS 2.0 whose items have an enclosure with url, length,
/// version, shortVersionString, edSignature and os (the last five under any prefix; the versions
/// also as elements of the item). Items of another system, of a channel of their own, or without a
/// version are passed over, as is everything else in the feed.
/// Malformed: no XML or no RSS, a document type or entities of its own, deeper than 16 elements,
/// more than 1,000 items, over kLargestFeedBytes.
[[nodiscard]] Result<std::vector<AppcastItem>> parseAppcast(const QByteArray& bytes,
                                                            const QString& systemVersion);

/// The newest item that is newer than the running version; none when there is none.
[[nodiscard]] std::optional<AppcastItem> newestUpdate(const std::vector<AppcastItem>& items,
                                                      const QString& runningVersion);

/// Whether an item says all that a safe download needs: an https address, a size within bounds and
/// a signature.
[[nodiscard]] bool isComplete(const AppcastItem& item);

}  // namespace quillo

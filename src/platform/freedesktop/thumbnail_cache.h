// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>
#include <QUrl>
#include <optional>

#include "platform/image_codec.h"

namespace quillo {

/// The four sizes of the shared thumbnail cache and their folders' names.
struct ThumbnailFlavor {
    const char* name;
    int side;  ///< The largest side in pixels.
};

/// The smallest flavour whose side is at least that many pixels; the largest beyond all.
[[nodiscard]] const ThumbnailFlavor& thumbnailFlavorFor(int sidePx);

/// Reads the cache of thumbnails that the programs of a desktop share (freedesktop Thumbnail
/// Managing Standard). What lies there is anybody's: bounded, checked and decoded with care. Blocks
/// on the disk; any thread.
class ThumbnailCache final {
public:
    /// folder is "thumbnails" below the XDG cache home; codec must outlive the cache.
    ThumbnailCache(QString folder, const ImageCodec& codec);

    /// The file's address as thumbnails are named after it.
    [[nodiscard]] static QByteArray uriOf(const QString& path);

    /// A thumbnail of that size or a larger one, made of the file as it is now; none otherwise.
    [[nodiscard]] std::optional<QImage> find(const QString& path, int sidePx) const;
    /// A smaller one, for want of better.
    [[nodiscard]] std::optional<QImage> findSmaller(const QString& path, int sidePx) const;

    /// Whether a program noted that the file as it is now gives no thumbnail.
    [[nodiscard]] bool isKnownToFail(const QString& path) const;

private:
    [[nodiscard]] std::optional<QImage> read(const QString& path,
                                             const ThumbnailFlavor& flavor) const;
    /// The entry's bytes where it is about the file as it is now.
    [[nodiscard]] std::optional<QByteArray> validEntry(const QString& entry,
                                                       const QString& path) const;

    QString m_folder;
    const ImageCodec& m_codec;
};

}  // namespace quillo

// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>

#include "base/result.h"

namespace quillo {

/// Decodes and encodes images: PNG, JPEG, WebP, TIFF, GIF, BMP, ICO through Qt's plugins, HEIC
/// through libheif. Input is hostile until decoded: dimensions and memory are bounded
/// (TooLarge), and nothing is trusted but the bytes. Thread-safe.
class ImageCodec {
public:
    virtual ~ImageCodec() = default;

    /// The picture upright as its orientation tag says.
    [[nodiscard]] virtual Result<QImage> decode(const QByteArray& bytes) const = 0;

    /// Width and height in pixels from the header alone, orientation applied.
    [[nodiscard]] virtual Result<QSize> size(const QByteArray& bytes) const = 0;

    /// Decodes at no more than the given bounds, keeping the aspect; never enlarges. Cheaper
    /// than decode for formats that can scale while decoding.
    [[nodiscard]] virtual Result<QImage> decodeScaled(const QByteArray& bytes,
                                                      QSize bounds) const = 0;

    /// The same image always gives the same bytes.
    [[nodiscard]] virtual Result<QByteArray> encodePng(const QImage& image) const = 0;

    /// quality is 0 to 1.
    [[nodiscard]] virtual Result<QByteArray> encodeJpeg(const QImage& image,
                                                        double quality) const = 0;

    /// The MIME type by the leading bytes ("image/png", "image/jpeg", "image/heic" and so on);
    /// empty when they are no known image.
    [[nodiscard]] virtual QString mimeType(const QByteArray& bytes) const = 0;
};

}  // namespace quillo

// SPDX-License-Identifier: MIT
#pragma once

#include "platform/image_codec.h"

namespace quillo {

/// The codec of the program: Qt's image plugins, libheif for HEIC and AVIF, and a PNG encoder made
/// for speed. Pictures beyond 32,000 pixels a side or 64 Mi pixels in all are TooLarge. Of an
/// animation it takes the first frame, of an icon file the largest picture. Making the first
/// object sets Qt's allocation limit for images, process-wide, and silences the warnings that its
/// plugins print about broken files; a failure is told by the Result alone.
class QtImageCodec final : public ImageCodec {
public:
    QtImageCodec();

    [[nodiscard]] Result<QImage> decode(const QByteArray& bytes) const override;
    [[nodiscard]] Result<QSize> size(const QByteArray& bytes) const override;
    [[nodiscard]] Result<QImage> decodeScaled(const QByteArray& bytes, QSize bounds) const override;
    [[nodiscard]] Result<QByteArray> encodePng(const QImage& image) const override;

    /// Transparent parts become white.
    [[nodiscard]] Result<QByteArray> encodeJpeg(const QImage& image, double quality) const override;
    [[nodiscard]] QString mimeType(const QByteArray& bytes) const override;
};

}  // namespace quillo

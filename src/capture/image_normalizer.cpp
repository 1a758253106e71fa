// SPDX-License-Identifier: MIT
#include "capture/image_normalizer.h"

#include <algorithm>
#include <cmath>

namespace quillo {
namespace {

QImage atStoredSize(const QImage& image, int maxSide) {
    const QSize target = storedSize(image.size(), maxSide);
    if (target == image.size()) {
        return image;
    }
    return image.scaled(target, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

std::optional<QByteArray> bytesOf(Result<QByteArray> encoded) {
    if (!encoded) {
        return std::nullopt;
    }
    return std::move(*encoded);
}

}  // namespace

QSize storedSize(QSize size, int maxSide) {
    if (size.width() <= 0 || size.height() <= 0) {
        return {};
    }
    if (size.width() <= maxSide && size.height() <= maxSide) {
        return size;
    }
    const double scale = std::min(double(maxSide) / size.width(), double(maxSide) / size.height());
    // A strip of one pixel's height stays one pixel high.
    return QSize(std::max(1, int(std::round(size.width() * scale))),
                 std::max(1, int(std::round(size.height() * scale))));
}

std::optional<QByteArray> normalizedPng(const ImageCodec& codec, const QImage& image, int maxSide) {
    if (storedSize(image.size(), maxSide).isEmpty()) {
        return std::nullopt;
    }
    return bytesOf(codec.encodePng(atStoredSize(image, maxSide)));
}

std::optional<QByteArray> downscaledJpeg(const ImageCodec& codec, const QImage& image, int maxSide,
                                         double quality) {
    if (storedSize(image.size(), maxSide).isEmpty()) {
        return std::nullopt;
    }
    return bytesOf(codec.encodeJpeg(atStoredSize(image, maxSide), quality));
}

}  // namespace quillo

// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <optional>

#include "platform/image_codec.h"

namespace quillo {

/// The longest side, in pixels, that an image is stored with.
inline constexpr int kLongestStoredSide = 1920;
inline constexpr double kStoredJpegQuality = 0.85;

/// The size at which an image is stored: its own when no side exceeds maxSide, else scaled so
/// that the longer side is maxSide and the aspect is kept. Empty for an empty size.
[[nodiscard]] QSize storedSize(QSize size, int maxSide);

/// The image at its stored size as PNG; none when it is empty or cannot be encoded.
[[nodiscard]] std::optional<QByteArray> normalizedPng(const ImageCodec& codec, const QImage& image,
                                                      int maxSide);

/// The same as JPEG; quality is 0 to 1.
[[nodiscard]] std::optional<QByteArray> downscaledJpeg(const ImageCodec& codec, const QImage& image,
                                                       int maxSide, double quality);

}  // namespace quillo

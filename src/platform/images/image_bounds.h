// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>

namespace quillo {

inline constexpr int kMaxImageSidePx = 32'000;

/// A picture of 8192 by 8192; decoded at four bytes a pixel it takes 256 MiB.
inline constexpr qint64 kMaxImagePixels = 64LL * 1024 * 1024;

[[nodiscard]] inline bool isWithinImageBounds(QSize size) {
    return size.width() <= kMaxImageSidePx && size.height() <= kMaxImageSidePx &&
           qint64{size.width()} * size.height() <= kMaxImagePixels;
}

}  // namespace quillo

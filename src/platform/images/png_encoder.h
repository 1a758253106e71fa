// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QImage>

#include "base/result.h"

namespace quillo {

/// Encodes a PNG (W3C, third edition) for speed: one filter for the whole picture, zlib's quickest
/// levels, and strips of fixed height that are compressed side by side. The bytes depend on the
/// picture alone: neither on the number of processors nor on metadata. Pictures of another gamut
/// are turned into sRGB, sixteen bits into eight, and an alpha channel that is opaque throughout
/// is left out.
[[nodiscard]] Result<QByteArray> encodePngQuickly(const QImage& image);

}  // namespace quillo

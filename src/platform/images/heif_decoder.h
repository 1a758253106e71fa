// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>

#include "base/result.h"

namespace quillo {

/// Size of the primary picture of an HEIC, HEIF or AVIF file, upright.
[[nodiscard]] Result<QSize> heifSize(const QByteArray& bytes);

/// The primary picture, upright, with eight bits a channel. Sequences and thumbnails are left out.
[[nodiscard]] Result<QImage> decodeHeif(const QByteArray& bytes);

}  // namespace quillo

// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>

namespace quillo {

/// The keywords and Latin-1 texts of a PNG file's tEXt and zTXt chunks (PNG specification, 11.3.3).
/// The bytes may be anything: what cannot be read is left out, long texts are.
[[nodiscard]] QHash<QByteArray, QByteArray> pngTexts(const QByteArray& file);

}  // namespace quillo

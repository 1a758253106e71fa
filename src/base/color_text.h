// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QString>
#include <optional>

namespace quillo {

enum class AlphaChannel { Omitted, Written };

/// Reads a stored colour: white space at both ends and every "#" are dropped, then exactly six
/// (RRGGBB, opaque) or eight (RRGGBBAA) hexadecimal digits are a colour; anything else is none.
[[nodiscard]] std::optional<QColor> colorFromHex(const QString& text);

/// Writes a colour as "#RRGGBB" or "#RRGGBBAA", each component times 255 and truncated. A colour
/// without readable components gives "#000000".
[[nodiscard]] QString hexString(const QColor& color, AlphaChannel alpha = AlphaChannel::Omitted);

}  // namespace quillo

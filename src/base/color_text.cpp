// SPDX-License-Identifier: MIT
#include "base/color_text.h"

#include <algorithm>

namespace quillo {
namespace {

bool isHexDigit(QChar c) {
    return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}

int truncatedByte(float component) {
    // The small term undoes the rounding of a component that was itself stored as n / 255.
    return std::clamp(static_cast<int>(component * 255.0F + 0.001F), 0, 255);
}

}  // namespace

std::optional<QColor> colorFromHex(const QString& text) {
    QString digits = text.trimmed();
    digits.remove(u'#');
    if ((digits.size() != 6 && digits.size() != 8) ||
        !std::all_of(digits.cbegin(), digits.cend(), isHexDigit)) {
        return std::nullopt;
    }
    const uint value = digits.toUInt(nullptr, 16);
    if (digits.size() == 6) {
        return QColor::fromRgb(QRgb(0xff000000U | value));
    }
    return QColor(int(value >> 24), int((value >> 16) & 255U), int((value >> 8) & 255U),
                  int(value & 255U));
}

QString hexString(const QColor& color, AlphaChannel alpha) {
    if (!color.isValid()) {
        return QStringLiteral("#000000");
    }
    const QColor rgb = color.toRgb();
    QString text = QString::asprintf("#%02X%02X%02X", truncatedByte(rgb.redF()),
                                     truncatedByte(rgb.greenF()), truncatedByte(rgb.blueF()));
    if (alpha == AlphaChannel::Written) {
        text += QString::asprintf("%02X", truncatedByte(rgb.alphaF()));
    }
    return text;
}

}  // namespace quillo

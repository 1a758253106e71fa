// SPDX-License-Identifier: MIT
#pragma once

#include <QFont>

namespace quillo {

/// The font at another size, in logical pixels, and weight.
[[nodiscard]] inline QFont sizedFont(QFont font, int pixels, QFont::Weight weight) {
    font.setPixelSize(pixels);
    font.setWeight(weight);
    return font;
}

}  // namespace quillo

// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QPalette>

#include "platform/system_appearance.h"

namespace quillo {

/// The colours of the panel, its cards and the windows. Text reaches a contrast of 4.5 : 1 on its
/// ground.
struct Palette {
    QColor panelBackground;
    QColor panelBorder;
    QColor field;  ///< Search field, chips, index badges.
    QColor primaryText;
    QColor secondaryText;
    QColor cardBase;  ///< Beneath a card's tint.
    QColor cardBorder;
    QColor accent;

    friend bool operator==(const Palette&, const Palette&) = default;
};

[[nodiscard]] const Palette& paletteFor(ColorScheme scheme);

/// The same colours in the roles that standard widgets draw with.
[[nodiscard]] QPalette widgetPalette(ColorScheme scheme);

/// Light or dark by the lightness of the window colour.
[[nodiscard]] ColorScheme schemeOf(const QPalette& palette);

}  // namespace quillo

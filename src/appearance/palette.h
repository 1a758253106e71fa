// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>

namespace quillo {

enum class ColorScheme { Light, Dark };

/// The colours of the panel and its cards. Text reaches a contrast of 4.5 : 1 on its ground.
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

/// How much of a kind's colour goes into its card unless the person chose otherwise.
inline constexpr double kDefaultCardTint = 0.15;

/// A card's ground: the base with that share of the kind's colour.
[[nodiscard]] QColor tintedCard(const Palette& palette, const QColor& kind,
                                double share = kDefaultCardTint);

/// The contrast ratio of two opaque colours, 1 to 21 (WCAG 2.1, relative luminance).
[[nodiscard]] double contrastRatio(const QColor& first, const QColor& second);

/// Light or dark by the lightness of the application's own window colour.
[[nodiscard]] ColorScheme desktopColorScheme();

}  // namespace quillo

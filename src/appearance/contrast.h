// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>

namespace quillo {

/// The least contrast of text on its ground (WCAG 2.1, success criterion 1.4.3).
inline constexpr double kTextContrast = 4.5;

/// The contrast ratio of two opaque colours, 1 to 21 (WCAG 2.1, relative luminance).
[[nodiscard]] double contrastRatio(const QColor& first, const QColor& second);

/// Relative luminance of an opaque colour, 0 to 1.
[[nodiscard]] double luminance(const QColor& color);

/// base with that share of over, in sRGB; a share outside 0 to 1 counts as its nearer end. The
/// result is opaque.
[[nodiscard]] QColor mixed(const QColor& base, const QColor& over, double share);

/// What a text stands on: a colour that hides a share of what is behind it.
struct Ground {
    QColor color;           ///< Opaque.
    double coverage = 1.0;  ///< 1 hides everything behind.

    /// The two ends of what is seen, over black and over white; both the colour where it hides all.
    [[nodiscard]] QColor overBlack() const { return mixed(Qt::black, color, coverage); }
    [[nodiscard]] QColor overWhite() const { return mixed(Qt::white, color, coverage); }
};

/// A further layer on a ground.
[[nodiscard]] Ground layered(const Ground& below, const QColor& color, double opacity);

/// Whether the text can be read on the ground whatever is behind it.
[[nodiscard]] bool isReadable(const QColor& text, const Ground& ground);

/// The wanted colour if it can be read on the ground whatever is behind it; otherwise moved towards
/// black or white as far as that takes. Where even those two cannot, the better of them.
[[nodiscard]] QColor readableText(const QColor& wanted, const Ground& ground);

/// Whether black or white can be read on the ground whatever is behind it.
[[nodiscard]] bool carriesText(const Ground& ground);

/// Black for a text that is lighter than its ground, white for a darker one: a layer of it makes
/// the contrast greater.
[[nodiscard]] QColor awayFrom(const QColor& text, const Ground& ground);

}  // namespace quillo

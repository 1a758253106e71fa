// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>

#include "appearance/contrast.h"
#include "appearance/palette.h"
#include "appearance/stored_colors.h"

namespace quillo {

/// Whether anything behind the panel's window can shine through it: only a compositor lets it.
enum class Backdrop { Hidden, Visible };

/// What the person's settings say about the panel and its cards. Numbers out of their range count
/// as the nearer end.
struct PanelColors {
    ColorScheme scheme = ColorScheme::Light;
    Backdrop backdrop = Backdrop::Hidden;
    QColor background = paletteFor(ColorScheme::Light).panelBackground;
    double panelOpacity = 1.0;
    double itemOpacity = 1.0;
    KindColors colors{};
    FilterColors badgeColors{};
    KindColors backgroundColors{};
    KindOpacities backgroundOpacities{};
};

/// How one card is drawn. Its texts reach 4.5 : 1 on the card, whatever is behind the panel.
struct CardLook {
    QColor ground;  ///< With its opacity.
    QColor border;
    QColor primaryText;
    QColor secondaryText;
    QColor tile;  ///< The colour of the kind, beneath its symbol.
    QColor tileSymbol;
    QColor badge;  ///< Beneath the card's digit.
    QColor badgeText;
};

/// The colours that panel and cards are drawn with. A value; cheap to copy.
class PanelLook final {
public:
    /// The opacities that can be set; less would make the panel a thing that is not there.
    static constexpr double kLeastOpacity = 0.3;

    explicit PanelLook(PanelColors colors = {});

    /// The panel's own colours, readable on its background; panelBackground has the opacity.
    [[nodiscard]] const Palette& palette() const { return m_palette; }

    /// A card of that stored kind and that filter. Its opacity is raised by as much as its texts
    /// need where the panel lets a backdrop shine through that nobody knows.
    [[nodiscard]] CardLook card(ClipType kind, FilterType filter) const;

private:
    [[nodiscard]] QColor tileColor(ClipType kind, FilterType filter) const;
    [[nodiscard]] QColor cardColor(ClipType kind, FilterType filter) const;
    [[nodiscard]] double cardOpacity(const QColor& color) const;

    PanelColors m_colors;
    Ground m_ground;
    Palette m_palette;
};

}  // namespace quillo

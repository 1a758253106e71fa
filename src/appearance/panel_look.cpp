// SPDX-License-Identifier: MIT
#include "appearance/panel_look.h"

#include <algorithm>

namespace quillo {
namespace {

// How far a field stands out from the panel, and a badge from its card.
constexpr double kFieldShare = 0.075;
constexpr double kBadgeShare = 0.13;
// The kinds' own colours carry white symbols, some of them at little more than this.
constexpr double kSymbolContrast = 1.8;
constexpr double kOpacityStep = 0.02;

double boundedOpacity(double opacity) {
    return std::clamp(opacity, PanelLook::kLeastOpacity, 1.0);
}

QColor withOpacity(QColor color, double opacity) {
    color.setAlphaF(float(opacity));
    return color;
}

Palette panelPalette(const Ground& ground, const Palette& scheme) {
    Palette palette = scheme;
    palette.primaryText = readableText(scheme.primaryText, ground);
    if (ground.color != scheme.panelBackground) {
        const Ground towards = layered({ground.color}, palette.primaryText, kFieldShare);
        const QColor over = isReadable(palette.primaryText, towards)
                                ? palette.primaryText
                                : awayFrom(palette.primaryText, {ground.color});
        palette.field = mixed(ground.color, over, kFieldShare);
    }
    palette.secondaryText =
        readableText(readableText(scheme.secondaryText, ground), {palette.field});
    palette.panelBackground = withOpacity(ground.color, ground.coverage);
    return palette;
}

// The filters that stand for a whole stored kind.
bool standsForKind(FilterType filter) {
    switch (filter) {
        case FilterType::Text:
        case FilterType::RichText:
        case FilterType::Html:
        case FilterType::Image:
        case FilterType::AllFiles:
            return true;
        default:
            return false;
    }
}

}  // namespace

PanelLook::PanelLook(PanelColors colors)
    : m_colors(std::move(colors)),
      m_ground{m_colors.background, m_colors.backdrop == Backdrop::Visible
                                        ? boundedOpacity(m_colors.panelOpacity)
                                        : 1.0},
      m_palette(panelPalette(m_ground, paletteFor(m_colors.scheme))) {}

QColor PanelLook::tileColor(ClipType kind, FilterType filter) const {
    if (m_colors.badgeColors.contains(filter)) {
        return m_colors.badgeColors.value(filter);
    }
    return standsForKind(filter) ? m_colors.colors.value(kind, defaultColor(kind))
                                 : defaultColor(filter);
}

// A kind whose background was not chosen shows the finer colour of what the clip is.
QColor PanelLook::cardColor(ClipType kind, FilterType filter) const {
    const QColor stored = m_colors.backgroundColors.value(kind, defaultColor(kind));
    const QColor tint = stored == defaultColor(kind) ? defaultColor(filter) : stored;
    const double share = m_colors.backgroundOpacities.value(kind, kDefaultBackgroundOpacity);
    return mixed(paletteFor(m_colors.scheme).cardBase, tint, share);
}

double PanelLook::cardOpacity(const QColor& color) const {
    double opacity = boundedOpacity(m_colors.itemOpacity);
    while (opacity < 1 && !carriesText(layered(m_ground, color, opacity))) {
        opacity = std::min(1.0, opacity + kOpacityStep);
    }
    return opacity;
}

CardLook PanelLook::card(ClipType kind, FilterType filter) const {
    const Palette& scheme = paletteFor(m_colors.scheme);
    const QColor color = cardColor(kind, filter);
    const double opacity = cardOpacity(color);
    const Ground ground = layered(m_ground, color, opacity);
    CardLook look;
    look.ground = withOpacity(color, opacity);
    look.border = scheme.cardBorder;
    look.primaryText = readableText(scheme.primaryText, ground);
    look.secondaryText = readableText(scheme.secondaryText, ground);
    look.tile = tileColor(kind, filter);
    look.tileSymbol = contrastRatio(Qt::white, look.tile) >= kSymbolContrast
                          ? QColor(Qt::white)
                          : paletteFor(ColorScheme::Light).primaryText;
    // Towards the text, as other fields stand out, as long as any text could be read on it.
    const Ground towards = layered(ground, look.secondaryText, kBadgeShare);
    look.badge = withOpacity(
        carriesText(towards) ? look.secondaryText : awayFrom(look.secondaryText, ground),
        kBadgeShare);
    look.badgeText = readableText(look.secondaryText, layered(ground, look.badge, kBadgeShare));
    return look;
}

}  // namespace quillo

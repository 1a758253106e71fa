// SPDX-License-Identifier: MIT
#include "overlay/panel_appearance.h"

#include "overlay/overlay_popups.h"
#include "overlay/overlay_view.h"

namespace quillo {
namespace {

constexpr QLatin1StringView kImageBadgeSizeKey("imageBadgeSize");

}  // namespace

PanelAppearance::PanelAppearance(ClipTypeColorManager& colors, const ThemeManager& theme,
                                 const UserDefaults& defaults, QObject* parent)
    : QObject(parent), m_colors(colors), m_theme(theme), m_defaults(defaults) {
    for (const auto changed :
         {&ClipTypeColorManager::panelOpacityChanged,
          &ClipTypeColorManager::panelBackgroundColorChanged,
          &ClipTypeColorManager::itemOpacityChanged, &ClipTypeColorManager::colorsChanged,
          &ClipTypeColorManager::filterBadgeColorsChanged,
          &ClipTypeColorManager::backgroundColorsChanged,
          &ClipTypeColorManager::backgroundOpacitiesChanged}) {
        connect(&colors, changed, this, &PanelAppearance::updateLook);
    }
    connect(&theme, &ThemeManager::currentThemeChanged, this, &PanelAppearance::themeChanged);
    connect(&theme, &ThemeManager::effectiveSchemeChanged, this, &PanelAppearance::updateLook);
    connect(&defaults, &UserDefaults::changed, this, [this](const QString& key) {
        if (key == kImageBadgeSizeKey) {
            updateImageBadges();
        }
    });
}

void PanelAppearance::dress(OverlayView* view, OverlayPopups* popups, Backdrop backdrop) {
    m_view = view;
    m_popups = popups;
    m_backdrop = backdrop;
    updateLook();
    updateImageBadges();
}

void PanelAppearance::themeChanged() {
    m_colors.resetPanelBackgroundColor(m_theme.effectiveScheme());
    updateLook();
}

void PanelAppearance::updateLook() {
    if (!m_view || !m_popups) {
        return;
    }
    const PanelLook look = m_colors.panelLook(m_backdrop);
    const KindColors kindColors = m_colors.colors();
    m_popups->setColors(look.palette());
    m_view->setLook(
        look, [kindColors](ClipType kind) { return kindColors.value(kind, defaultColor(kind)); });
}

void PanelAppearance::updateImageBadges() {
    if (m_view) {
        m_view->strip().setImageBadgePx(imageBadgePx(m_defaults.string(kImageBadgeSizeKey)));
    }
}

}  // namespace quillo

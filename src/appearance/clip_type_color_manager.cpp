// SPDX-License-Identifier: MIT
#include "appearance/clip_type_color_manager.h"

#include <QJsonArray>
#include <QScopedValueRollback>
#include <algorithm>
#include <utility>

#include "base/color_text.h"

namespace quillo {

using namespace setting;

template <typename Value>
void ClipTypeColorManager::assign(Value& field, Value value, Signal changed) {
    if (field != value) {
        field = std::move(value);
        Q_EMIT(this->*changed)();
    }
}

ClipTypeColorManager::ClipTypeColorManager(UserDefaults& defaults, const ThemeManager& theme,
                                           QObject* parent)
    : QObject(parent),
      m_defaults(defaults),
      m_theme(theme),
      m_panelOpacity(storedFactor(defaults, kPanelOpacity)),
      m_panelWidth(storedFactor(defaults, kPanelWidth)),
      m_itemOpacity(storedFactor(defaults, kItemOpacity)),
      m_filterOrder(storedFilterOrder(defaults)),
      m_filterVisibility(storedFilterVisibility(defaults)) {
    loadPanelBackground();
    loadKindColors();
    loadBackgrounds();
    m_filterBadgeColors = storedBadgeColors(defaults);
    connect(&m_defaults, &UserDefaults::changed, this, &ClipTypeColorManager::settingEdited);
    connect(&m_theme, &ThemeManager::effectiveSchemeChanged, this, [this] {
        if (!m_hasCustomPanelBackground) {
            setPanelBackgroundColor(defaultPanelBackground());
        }
    });
}

void ClipTypeColorManager::loadPanelBackground() {
    const std::optional<QColor> stored = storedColor(m_defaults, kPanelBackground);
    m_seenBackground = m_defaults.string(kPanelBackground);
    m_hasCustomPanelBackground = stored.has_value();
    setPanelBackgroundColor(stored.value_or(defaultPanelBackground()));
}

void ClipTypeColorManager::loadKindColors() {
    assign(m_colors, storedKindColors(m_defaults, kKindColor),
           &ClipTypeColorManager::colorsChanged);
}

void ClipTypeColorManager::loadBackgrounds() {
    assign(m_backgroundColors, storedKindColors(m_defaults, kKindBackground),
           &ClipTypeColorManager::backgroundColorsChanged);
    assign(m_backgroundOpacities, storedKindOpacities(m_defaults),
           &ClipTypeColorManager::backgroundOpacitiesChanged);
}

void ClipTypeColorManager::settingEdited(const QString& key) {
    if (m_isWriting || factorEdited(key)) {
        return;
    }
    if (key == kPanelBackground) {
        loadPanelBackground();
    } else if (key == kFilterOrder) {
        assign(m_filterOrder, storedFilterOrder(m_defaults),
               &ClipTypeColorManager::filterOrderChanged);
    } else if (key.startsWith(kFilterVisible)) {
        assign(m_filterVisibility, storedFilterVisibility(m_defaults),
               &ClipTypeColorManager::filterVisibilityChanged);
    } else if (key.startsWith(kFilterBadgeColor)) {
        assign(m_filterBadgeColors, storedBadgeColors(m_defaults),
               &ClipTypeColorManager::filterBadgeColorsChanged);
    } else if (key.startsWith(kKindColor)) {
        loadKindColors();
    } else if (key.startsWith(kKindBackground) || key.startsWith(kKindOpacity)) {
        loadBackgrounds();
    }
}

bool ClipTypeColorManager::factorEdited(const QString& key) {
    const double stored = storedFactor(m_defaults, key);
    if (key == kPanelOpacity) {
        assign(m_panelOpacity, stored, &ClipTypeColorManager::panelOpacityChanged);
    } else if (key == kPanelWidth) {
        assign(m_panelWidth, stored, &ClipTypeColorManager::panelWidthChanged);
    } else if (key == kItemOpacity) {
        assign(m_itemOpacity, stored, &ClipTypeColorManager::itemOpacityChanged);
    } else {
        return false;
    }
    return true;
}

void ClipTypeColorManager::storeFactor(const QString& key, double value) {
    const QScopedValueRollback writing(m_isWriting, true);
    m_defaults.setObject(key, value);
}

void ClipTypeColorManager::setPanelOpacity(double opacity) {
    assign(m_panelOpacity, opacity, &ClipTypeColorManager::panelOpacityChanged);
    storeFactor(kPanelOpacity, opacity);
}

void ClipTypeColorManager::setPanelWidth(double factor) {
    assign(m_panelWidth, factor, &ClipTypeColorManager::panelWidthChanged);
    storeFactor(kPanelWidth, factor);
}

void ClipTypeColorManager::setItemOpacity(double opacity) {
    assign(m_itemOpacity, opacity, &ClipTypeColorManager::itemOpacityChanged);
    storeFactor(kItemOpacity, opacity);
}

void ClipTypeColorManager::setPanelBackgroundColor(const QColor& color) {
    assign(m_panelBackgroundColor, color, &ClipTypeColorManager::panelBackgroundColorChanged);
}

void ClipTypeColorManager::savePanelBackgroundColor() {
    if (!m_hasCustomPanelBackground) {
        return;
    }
    const QScopedValueRollback writing(m_isWriting, true);
    m_seenBackground = hexString(m_panelBackgroundColor);
    m_defaults.setObject(kPanelBackground, *m_seenBackground);
}

void ClipTypeColorManager::resetPanelBackgroundColor(std::optional<ColorScheme> scheme) {
    if (m_defaults.string(kPanelBackground) != m_seenBackground) {
        loadPanelBackground();
        return;
    }
    const QScopedValueRollback writing(m_isWriting, true);
    m_hasCustomPanelBackground = false;
    m_seenBackground.reset();
    m_defaults.remove(kPanelBackground);
    setPanelBackgroundColor(scheme ? paletteFor(*scheme).panelBackground
                                   : defaultPanelBackground());
    savePanelBackgroundColor();
}

QColor ClipTypeColorManager::defaultPanelBackground() const {
    return paletteFor(m_theme.effectiveScheme()).panelBackground;
}

void ClipTypeColorManager::setFilterBadgeColor(const QColor& color, FilterType filter) {
    const QScopedValueRollback writing(m_isWriting, true);
    FilterColors badges = m_filterBadgeColors;
    badges.insert(filter, color);
    assign(m_filterBadgeColors, badges, &ClipTypeColorManager::filterBadgeColorsChanged);
    m_defaults.setObject(keyFor(kFilterBadgeColor, filter), hexString(color));
}

QColor ClipTypeColorManager::badgeColor(FilterType filter) const {
    const auto chosen = m_filterBadgeColors.constFind(filter);
    return chosen != m_filterBadgeColors.constEnd() ? *chosen : defaultColor(filter);
}

void ClipTypeColorManager::removeFamily(const QString& prefix) {
    for (const ClipType kind : kClipTypes) {
        m_defaults.remove(keyFor(prefix, kind));
    }
}

void ClipTypeColorManager::resetBadgeColors() {
    const QScopedValueRollback writing(m_isWriting, true);
    for (const FilterType filter : allCases<FilterType>()) {
        m_defaults.remove(keyFor(kFilterBadgeColor, filter));
    }
    assign(m_filterBadgeColors, {}, &ClipTypeColorManager::filterBadgeColorsChanged);
    removeFamily(kKindColor);
    assign(m_colors, {}, &ClipTypeColorManager::colorsChanged);
}

QList<FilterType> ClipTypeColorManager::visibleFilters() const {
    QList<FilterType> visible = m_filterOrder;
    visible.removeIf([this](FilterType filter) { return !m_filterVisibility.value(filter, true); });
    return visible;
}

void ClipTypeColorManager::setFilterVisible(FilterType filter, bool isVisible) {
    FilterVisibility visibility = m_filterVisibility;
    visibility.insert(filter, isVisible);
    const bool isAnother = std::exchange(m_filterVisibility, visibility) != visibility;
    saveFilterVisibility();
    if (isAnother) {
        Q_EMIT filterVisibilityChanged();
    }
}

void ClipTypeColorManager::moveFilter(const QList<int>& sources, int destination) {
    const QList<FilterType> order = movedFilters(m_filterOrder, sources, destination);
    const bool isAnother = std::exchange(m_filterOrder, order) != order;
    saveFilterOrder();
    if (isAnother) {
        Q_EMIT filterOrderChanged();
    }
}

void ClipTypeColorManager::saveFilterOrder() {
    const QScopedValueRollback writing(m_isWriting, true);
    QJsonArray raw;
    for (const FilterType filter : std::as_const(m_filterOrder)) {
        raw.append(rawValue(filter));
    }
    m_defaults.setObject(kFilterOrder, raw);
}

void ClipTypeColorManager::saveFilterVisibility() {
    const QScopedValueRollback writing(m_isWriting, true);
    for (auto it = m_filterVisibility.cbegin(); it != m_filterVisibility.cend(); ++it) {
        m_defaults.setObject(keyFor(kFilterVisible, it.key()), it.value());
    }
}

void ClipTypeColorManager::resetToDefaults() {
    const QScopedValueRollback writing(m_isWriting, true);
    for (const QString& prefix : {kKindColor, kKindBackground, kKindOpacity}) {
        removeFamily(prefix);
    }
    for (const QString& key :
         {kPanelOpacity, kPanelWidth, kPanelBackground, kItemOpacity, kFilterOrder}) {
        m_defaults.remove(key);
    }
    for (const FilterType filter : allCases<FilterType>()) {
        m_defaults.remove(keyFor(kFilterVisible, filter));
    }
    setPanelOpacity(1.0);
    setPanelWidth(1.0);
    loadPanelBackground();
    setItemOpacity(1.0);
    assign(m_filterOrder, defaultFilterOrder(), &ClipTypeColorManager::filterOrderChanged);
    saveFilterOrder();
    assign(m_filterVisibility, defaultFilterVisibility(),
           &ClipTypeColorManager::filterVisibilityChanged);
    saveFilterVisibility();
    loadKindColors();
    loadBackgrounds();
}

PanelLook ClipTypeColorManager::panelLook(Backdrop backdrop) const {
    return PanelLook({.scheme = m_theme.effectiveScheme(),
                      .backdrop = backdrop,
                      .background = m_panelBackgroundColor,
                      .panelOpacity = m_panelOpacity,
                      .itemOpacity = m_itemOpacity,
                      .colors = m_colors,
                      .badgeColors = m_filterBadgeColors,
                      .backgroundColors = m_backgroundColors,
                      .backgroundOpacities = m_backgroundOpacities});
}

}  // namespace quillo

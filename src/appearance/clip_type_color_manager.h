// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <optional>

#include "appearance/panel_look.h"
#include "appearance/panel_position_control.h"
#include "appearance/stored_colors.h"
#include "appearance/theme_manager.h"

namespace quillo {

/// Holds everything that colours and sizes the overlay: the colours of kinds and filters, the
/// order and visibility of the filter chips, the panel's width, opacity and background, and the
/// cards' opacity. Kept in the settings and taken over from them when they are edited by hand.
/// Each value has a signal of its own, sent when it has become another. Main thread.
class ClipTypeColorManager final : public QObject {
    Q_OBJECT

public:
    /// Both must outlive the manager.
    ClipTypeColorManager(UserDefaults& defaults, const ThemeManager& theme,
                         QObject* parent = nullptr);

    /// Accent colours. A kind is absent after resetBadgeColors(): its default counts.
    [[nodiscard]] const KindColors& colors() const { return m_colors; }
    /// Only those that the person chose.
    [[nodiscard]] const FilterColors& filterBadgeColors() const { return m_filterBadgeColors; }
    [[nodiscard]] const KindColors& backgroundColors() const { return m_backgroundColors; }
    [[nodiscard]] const KindOpacities& backgroundOpacities() const { return m_backgroundOpacities; }
    /// The opacities, 1 opaque, and the part of the screen's width, as they are stored: an edit by
    /// hand may hold any number, so what draws bounds them.
    [[nodiscard]] double panelOpacity() const { return m_panelOpacity; }
    [[nodiscard]] double panelWidth() const { return m_panelWidth; }
    [[nodiscard]] double itemOpacity() const { return m_itemOpacity; }
    [[nodiscard]] QColor panelBackgroundColor() const { return m_panelBackgroundColor; }
    [[nodiscard]] bool hasCustomPanelBackground() const { return m_hasCustomPanelBackground; }
    [[nodiscard]] const QList<FilterType>& filterOrder() const { return m_filterOrder; }
    [[nodiscard]] const FilterVisibility& filterVisibility() const { return m_filterVisibility; }

    /// Stores the value too.
    void setPanelOpacity(double opacity);
    void setPanelWidth(double factor);
    void setItemOpacity(double opacity);

    /// Stores nothing; savePanelBackgroundColor() does, for a colour that is marked as custom.
    void setPanelBackgroundColor(const QColor& color);
    void setHasCustomPanelBackground(bool isCustom) { m_hasCustomPanelBackground = isCustom; }
    void savePanelBackgroundColor();
    /// Forgets the person's colour for the default of the scheme, or of the theme in force. A
    /// colour that came into the settings by hand and was not taken over yet stays: an edit that
    /// changes theme and colour means both.
    void resetPanelBackgroundColor(std::optional<ColorScheme> scheme = std::nullopt);
    [[nodiscard]] QColor defaultPanelBackground() const;

    void setFilterBadgeColor(const QColor& color, FilterType filter);
    /// What the person chose for the filter, else its own colour.
    [[nodiscard]] QColor badgeColor(FilterType filter) const;
    /// Forgets the chosen badge colours and the accent colours of the kinds.
    void resetBadgeColors();

    /// In their order; a filter without an entry counts as shown.
    [[nodiscard]] QList<FilterType> visibleFilters() const;
    void setFilterVisible(FilterType filter, bool isVisible);
    /// As movedFilters() does.
    void moveFilter(const QList<int>& sources, int destination);
    void saveFilterOrder();
    void saveFilterVisibility();

    /// Everything but the badge colours.
    void resetToDefaults();

    /// The way from a settings page to the panel; none before it is set and after it is gone.
    [[nodiscard]] PanelPositionControl* overlayController() const { return m_overlayController; }
    void setOverlayController(PanelPositionControl* control) { m_overlayController = control; }

    /// How panel and cards are drawn with these values at present.
    [[nodiscard]] PanelLook panelLook(Backdrop backdrop) const;

Q_SIGNALS:
    void colorsChanged();
    void filterBadgeColorsChanged();
    void backgroundColorsChanged();
    void backgroundOpacitiesChanged();
    void panelOpacityChanged();
    void panelWidthChanged();
    void panelBackgroundColorChanged();
    void itemOpacityChanged();
    void filterOrderChanged();
    void filterVisibilityChanged();

private:
    using Signal = void (ClipTypeColorManager::*)();

    template <typename Value>
    void assign(Value& field, Value value, Signal changed);
    void storeFactor(const QString& key, double value);
    void removeFamily(const QString& prefix);
    void settingEdited(const QString& key);
    [[nodiscard]] bool factorEdited(const QString& key);
    void loadPanelBackground();
    void loadKindColors();
    void loadBackgrounds();

    UserDefaults& m_defaults;
    const ThemeManager& m_theme;
    KindColors m_colors;
    FilterColors m_filterBadgeColors;
    KindColors m_backgroundColors;
    KindOpacities m_backgroundOpacities;
    double m_panelOpacity;
    double m_panelWidth;
    QColor m_panelBackgroundColor;
    QPointer<PanelPositionControl> m_overlayController;
    double m_itemOpacity;
    QList<FilterType> m_filterOrder;
    FilterVisibility m_filterVisibility;
    bool m_hasCustomPanelBackground = false;
    std::optional<QString> m_seenBackground;  ///< The stored text as it was last read or written.
    bool m_isWriting = false;                 ///< What changes now in the settings is ours.
};

}  // namespace quillo

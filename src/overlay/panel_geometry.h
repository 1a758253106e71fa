// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QPoint>
#include <QRect>
#include <optional>

#include "appearance/panel_position.h"

namespace quillo {

inline constexpr int kPanelHeight = 320;
inline constexpr int kPanelCornerRadius = 20;
inline constexpr int kPanelTopMargin = 24;
inline constexpr int kPanelBottomMargin = 20;
/// What the bar needs at least, where the screen has it.
inline constexpr int kNarrowestPanel = 640;

/// A screen's whole area and the part that panels and docks leave free, in logical pixels with
/// the origin at the top left of the desktop.
struct ScreenArea {
    QRect full;
    QRect visible;
};

/// The panel's width for a part of the screen's: a part beyond 0 to 1 counts as the nearer end, and
/// no panel is narrower than its bar.
[[nodiscard]] int panelWidthOn(int screenWidth, double factor);

/// The panel's top left corner on a screen: the dragged origin where there is one, else centred
/// across the whole screen at the position.
[[nodiscard]] QPoint originForPanel(PanelPosition position, const std::optional<QPoint>& custom,
                                    const ScreenArea& screen, int width);

/// The frame moved by the least way so that it lies on one of the screens, when it touches none.
[[nodiscard]] QRect nearestVisibleFrame(const QRect& frame, const QList<QRect>& screens);

}  // namespace quillo

// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QPoint>
#include <QRect>
#include <QString>
#include <optional>

namespace quillo {

/// Where the panel goes on its screen; the raw texts "top", "center" and "bottom" are stored.
enum class PanelPosition { Top, Center, Bottom };

/// A text that names no position reads as Bottom.
[[nodiscard]] PanelPosition panelPositionFromText(const QString& text);
[[nodiscard]] QString panelPositionText(PanelPosition position);

inline constexpr int kPanelHeight = 320;
inline constexpr int kPanelCornerRadius = 20;
inline constexpr int kPanelTopMargin = 24;
inline constexpr int kPanelBottomMargin = 20;

/// A screen's whole area and the part that panels and docks leave free, in logical pixels with
/// the origin at the top left of the desktop.
struct ScreenArea {
    QRect full;
    QRect visible;
};

/// The panel's top left corner on a screen: the dragged origin where there is one, else centred
/// across the whole screen at the position.
[[nodiscard]] QPoint originForPanel(PanelPosition position, const std::optional<QPoint>& custom,
                                    const ScreenArea& screen, int width);

/// The frame moved by the least way so that it lies on one of the screens, when it touches none.
[[nodiscard]] QRect nearestVisibleFrame(const QRect& frame, const QList<QRect>& screens);

}  // namespace quillo

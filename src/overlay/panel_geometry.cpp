// SPDX-License-Identifier: MIT
#include "overlay/panel_geometry.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace quillo {
namespace {

int clampedInto(int start, int length, int areaStart, int areaLength) {
    const int last = std::max(areaStart, areaStart + areaLength - length);
    return std::clamp(start, areaStart, last);
}

QRect movedInto(const QRect& frame, const QRect& area) {
    return QRect(QPoint(clampedInto(frame.x(), frame.width(), area.x(), area.width()),
                        clampedInto(frame.y(), frame.height(), area.y(), area.height())),
                 frame.size());
}

}  // namespace

int panelWidthOn(int screenWidth, double factor) {
    const double bounded = std::clamp(factor, 0.0, 1.0);
    return std::max(std::min(kNarrowestPanel, screenWidth),
                    int(std::lround(screenWidth * bounded)));
}

QPoint originForPanel(PanelPosition position, const std::optional<QPoint>& custom,
                      const ScreenArea& screen, int width) {
    if (custom) {
        return *custom;
    }
    const int x = screen.full.x() + (screen.full.width() - width) / 2;
    switch (position) {
        case PanelPosition::Top:
            return {x, screen.visible.y() + kPanelTopMargin};
        case PanelPosition::Center:
            return {x, screen.visible.y() + (screen.visible.height() - kPanelHeight) / 2};
        case PanelPosition::Bottom:
            break;
    }
    return {x, screen.full.y() + screen.full.height() - kPanelBottomMargin - kPanelHeight};
}

QRect nearestVisibleFrame(const QRect& frame, const QList<QRect>& screens) {
    QRect best = frame;
    int bestDistance = std::numeric_limits<int>::max();
    for (const QRect& screen : screens) {
        if (screen.intersects(frame)) {
            return frame;
        }
        const QRect moved = movedInto(frame, screen);
        const int distance = (moved.topLeft() - frame.topLeft()).manhattanLength();
        if (distance < bestDistance) {
            best = moved;
            bestDistance = distance;
        }
    }
    return best;
}

}  // namespace quillo

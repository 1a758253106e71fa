// SPDX-License-Identifier: MIT
#include "appearance/panel_position.h"

#include <array>

namespace quillo {
namespace {

constexpr std::array kPositions = {PanelPosition::Top, PanelPosition::Center,
                                   PanelPosition::Bottom};

}  // namespace

template <>
std::span<const PanelPosition> allCases<PanelPosition>() {
    return kPositions;
}

PanelPosition panelPositionFromText(const QString& text) {
    if (text == QLatin1StringView("top")) {
        return PanelPosition::Top;
    }
    return text == QLatin1StringView("center") ? PanelPosition::Center : PanelPosition::Bottom;
}

QString panelPositionText(PanelPosition position) {
    switch (position) {
        case PanelPosition::Top:
            return QStringLiteral("top");
        case PanelPosition::Center:
            return QStringLiteral("center");
        case PanelPosition::Bottom:
            break;
    }
    return QStringLiteral("bottom");
}

}  // namespace quillo

// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "base/all_cases.h"

namespace quillo {

/// Where the overlay's panel goes on its screen; the raw texts "top", "center" and "bottom" are
/// stored.
enum class PanelPosition { Top, Center, Bottom };

template <>
[[nodiscard]] std::span<const PanelPosition> allCases<PanelPosition>();

/// A text that names no position reads as Bottom.
[[nodiscard]] PanelPosition panelPositionFromText(const QString& text);
[[nodiscard]] QString panelPositionText(PanelPosition position);

}  // namespace quillo

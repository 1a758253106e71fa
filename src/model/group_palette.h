// SPDX-License-Identifier: MIT
#pragma once

#include <QRandomGenerator>
#include <QString>
#include <span>

namespace quillo {

/// A colour that is offered for groups.
struct GroupColor {
    const char* hex;   ///< As it is stored, "#RRGGBB".
    const char* name;  ///< What the colour menu calls it.
};

/// The nine colours in the order of the pickers.
[[nodiscard]] std::span<const GroupColor> groupPalette();

/// One of them, each as likely as another.
[[nodiscard]] QString randomGroupColor(QRandomGenerator& random = *QRandomGenerator::global());

}  // namespace quillo

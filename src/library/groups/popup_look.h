// SPDX-License-Identifier: MIT
#pragma once

#include "appearance/palette.h"

class QWidget;

namespace quillo {

/// The colours of what floats above the panel. The ground is opaque, and every text reaches
/// 4.5 : 1 on what it stands on, whatever background the person gave the panel.
struct PopupLook {
    QColor ground;
    QColor border;
    QColor separator;
    QColor field;  ///< Text fields and plain buttons.
    QColor fieldBorder;
    QColor primaryText;
    QColor secondaryText;
    QColor accent;
    QColor onAccent;     ///< Text and symbols on the accent.
    QColor accentText;   ///< Check marks on the ground.
    QColor ring;         ///< Around what has the focus.
    QColor destructive;  ///< The titles of what destroys.

    friend bool operator==(const PopupLook&, const PopupLook&) = default;
};

[[nodiscard]] PopupLook popupLook(const Palette& panel);

/// Gives a widget the look's colours in the roles that standard widgets draw with.
void applyLook(QWidget& widget, const PopupLook& look);

}  // namespace quillo

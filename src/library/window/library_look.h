// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>

#include "appearance/contrast.h"
#include "library/groups/popup_look.h"

class QWidget;

namespace quillo {

/// The colours of the library window. Text reaches 4.5 : 1 on its ground.
struct LibraryLook {
    QColor ground;
    QColor sidebar;
    QColor line;  ///< Between columns and areas.
    QColor card;
    QColor cardBorder;
    QColor field;  ///< Text fields, buttons and chips.
    QColor primaryText;
    QColor secondaryText;
    QColor accent = QColor(0x2d, 0x6f, 0xe8);
    QColor onAccent = Qt::white;
    Palette menus = {};       ///< Of what floats above the window.
    PopupLook controls = {};  ///< Of fields and buttons that stand on the ground.
};

[[nodiscard]] const LibraryLook& libraryLook(ColorScheme scheme);
/// The one that suits the widget's palette, which follows the theme.
[[nodiscard]] const LibraryLook& libraryLookOf(const QWidget& widget);

/// Of what stands on a sheet over the window.
[[nodiscard]] PopupLook librarySheet(ColorScheme scheme);

}  // namespace quillo

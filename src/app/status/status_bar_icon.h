// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QIcon>
#include <QString>
#include <QStringView>
#include <optional>

#include "app/status/drop_bounce.h"
#include "base/all_cases.h"
#include "platform/system_appearance.h"

namespace quillo {

/// The drawings that a person can choose for the status item, in the order of the menu.
enum class StatusBarIcon {
    Quillo,
    Clipboard,
    ListClipboard,
    Paperclip,
    Squares,
    Docs,
    Stack,
    Scissors,
    Tray,
};

template <>
[[nodiscard]] std::span<const StatusBarIcon> allCases<StatusBarIcon>();

/// What the settings hold under "statusBarIcon"; also the drawing's name.
[[nodiscard]] QString rawValue(StatusBarIcon icon);
/// None for a text that is no raw value; upper and lower case differ.
[[nodiscard]] std::optional<StatusBarIcon> statusBarIconFromRaw(QStringView raw);
/// What the menu calls it.
[[nodiscard]] QString label(StatusBarIcon icon);

/// The drawing in all sizes that panels and menus take. The program's own has its own colours, the
/// others are drawn in the ink.
[[nodiscard]] QIcon image(StatusBarIcon icon, const QColor& ink);

/// What the status item shows for a moment.
struct StatusPicture {
    QString symbol;
    QColor ink;
    BounceFrame frame;        ///< Bounded so that the drawing stays within its square.
    bool hasWarning = false;  ///< With a dot in its corner.
};
[[nodiscard]] QIcon image(const StatusPicture& picture);

/// The ink for symbols on a panel whose colour nobody tells: light where the desktop is dark; else
/// a grey with a contrast of 3 : 1 on white and on black, since many light desktops have dark
/// panels.
[[nodiscard]] QColor statusInk(std::optional<ColorScheme> desktop);

}  // namespace quillo

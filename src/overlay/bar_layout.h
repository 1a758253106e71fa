// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>

namespace quillo {

/// What the parts of the bar would like, in logical pixels.
struct BarParts {
    int name = 0;
    int badges = 0;      ///< All of them with the gap before them; 0 without any.
    int titleBlock = 0;  ///< The fixed width of name, badges and total together.
    int total = 0;       ///< The total's fixed width with the gap before it.
    int search = 0;      ///< At its widest.
    int searchLeast = 0;
    int chips = 0;       ///< Without scrolling.
    int lock = 0;        ///< With its label.
    int lockSymbol = 0;  ///< Without.
    int buttons = 0;     ///< Library, settings and close together.
};

/// Where they go.
struct BarLayout {
    bool showsBadges = true;
    bool showsLockLabel = true;
    int searchLeft = 0;
    int searchWidth = 0;
    int chipsLeft = 0;
    int chipsWidth = 0;  ///< Less than wanted: they scroll.
    int lockLeft = 0;
    int buttonsLeft = 0;
};

inline constexpr int kBarMargin = 16;
inline constexpr int kBarGap = 10;

/// As the bar narrows its badges go first, then the lock's label, then the search field shrinks;
/// after that the chips scroll.
[[nodiscard]] BarLayout barLayout(const BarParts& parts, int width);

}  // namespace quillo

// SPDX-License-Identifier: MIT
#include "overlay/bar_layout.h"

#include <algorithm>

namespace quillo {
namespace {

constexpr int kGapBeforeSearch = 24;
constexpr int kGapBeforeLock = 16;

int titleWidth(const BarParts& parts, bool showsBadges) {
    return showsBadges ? parts.titleBlock : parts.name + parts.total;
}

// What is left for search field and chips.
int middleWidth(const BarParts& parts, const BarLayout& layout, int width) {
    const int lock = layout.showsLockLabel ? parts.lock : parts.lockSymbol;
    return width - 2 * kBarMargin - titleWidth(parts, layout.showsBadges) - kGapBeforeSearch -
           kBarGap - kGapBeforeLock - lock - parts.buttons;
}

}  // namespace

BarLayout barLayout(const BarParts& parts, int width) {
    BarLayout layout;
    const int wanted = parts.search + parts.chips;
    layout.showsBadges = middleWidth(parts, layout, width) >= wanted;
    layout.showsLockLabel = middleWidth(parts, layout, width) >= wanted;
    const int middle = middleWidth(parts, layout, width);
    layout.searchWidth = std::clamp(middle - parts.chips, parts.searchLeast, parts.search);
    layout.searchLeft = kBarMargin + titleWidth(parts, layout.showsBadges) + kGapBeforeSearch;
    layout.chipsLeft = layout.searchLeft + layout.searchWidth + kBarGap;
    layout.chipsWidth = std::clamp(middle - layout.searchWidth, 0, parts.chips);
    layout.buttonsLeft = width - kBarMargin - parts.buttons;
    layout.lockLeft = layout.buttonsLeft - (layout.showsLockLabel ? parts.lock : parts.lockSymbol);
    return layout;
}

}  // namespace quillo

// SPDX-License-Identifier: MIT
#include "overlay/strip_layout.h"

#include <algorithm>

namespace quillo {
QRect StripLayout::cardRect(int index) const {
    return {index * kStep + kSidePadding, kTopPadding, kCardWidth, kCardHeight};
}

int StripLayout::contentWidth() const {
    return cardCount == 0 ? 0 : cardCount * kStep + 2 * kSidePadding - kSpacing;
}

int StripLayout::maxScroll() const {
    return std::max(0, contentWidth() - viewportWidth);
}

int StripLayout::clampedScroll(int scroll) const {
    return std::clamp(scroll, 0, maxScroll());
}

int StripLayout::scrollToCenter(int index) const {
    return clampedScroll(cardRect(index).x() + kCardWidth / 2 - viewportWidth / 2);
}

int StripLayout::indexAt(QPoint contentPoint) const {
    if (contentPoint.x() < kSidePadding) {
        return -1;
    }
    const int index = (contentPoint.x() - kSidePadding) / kStep;
    return index < cardCount && cardRect(index).contains(contentPoint) ? index : -1;
}

StripLayout::Range StripLayout::cardsBetween(int left, int right) const {
    const int first = std::max(0, (left - kSidePadding - kCardWidth) / kStep);
    const int last = std::min(cardCount - 1, (right - kSidePadding) / kStep);
    return {first, last};
}

}  // namespace quillo

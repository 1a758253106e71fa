// SPDX-License-Identifier: MIT
// The fixed geometry of the strip.
#include <gtest/gtest.h>

#include "overlay/strip_layout.h"

namespace quillo {
namespace {

TEST(StripLayout, SelectingCentresACardAsFarAsTheEndsAllow) {
    const struct {
        int cards;
        int width;
        int index;
        int scroll;
    } rows[] = {
        {20, 1000, 0, 0},
        {20, 1000, 1, 0},
        {20, 1000, 5, 5 * 292 + 16 + 140 - 500},
        {20, 1000, 19, 20 * 292 + 20 - 1000},
        {3, 1000, 2, 0},
        {1, 100, 0, 106},
        {50, 5120, 49, 50 * 292 + 20 - 5120},
    };
    for (const auto& row : rows) {
        EXPECT_EQ((StripLayout{row.cards, row.width}.scrollToCenter(row.index)), row.scroll)
            << row.cards << " cards, " << row.width << " wide, card " << row.index;
    }
}

TEST(StripLayout, EveryVisibleCardIsPaintedAndNoneTooMany) {
    const StripLayout layout{50, 1000};
    for (int left = 0; left < layout.maxScroll(); left += 7) {
        const QRect shown(left, 0, 1000, 256);
        const StripLayout::Range range = layout.cardsBetween(shown.left(), shown.right());
        for (int i = 0; i < layout.cardCount; ++i) {
            const bool isInRange = i >= range.first && i <= range.last;
            EXPECT_TRUE(isInRange || !layout.cardRect(i).intersects(shown)) << left << " " << i;
        }
        EXPECT_LE(range.last - range.first, 5) << left;
    }
    EXPECT_LT((StripLayout{0, 1000}.cardsBetween(0, 1000).last), 0);
}

}  // namespace
}  // namespace quillo

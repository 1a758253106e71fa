// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/x11/pasteboard/clipboard_keeper.h"

using namespace std::chrono_literals;

namespace quillo::x11 {

namespace {

constexpr xcb_window_t kProgram = 7;
const TimePoint kStart{};
const KeptContents kKept{{{"STRING", {"STRING", "kept"}}}};

ClipboardKeeper copied() {
    ClipboardKeeper keeper(20ms, XCB_WINDOW_NONE);
    EXPECT_TRUE(keeper.ownedBy(kProgram, 100).hasChanged);
    EXPECT_EQ(keeper.count(), 2);
    return keeper;
}

TEST(ClipboardKeeper, BelievesAnEmptyClipboardOnlyAfterTheGraceTime) {
    ClipboardKeeper keeper = copied();
    keeper.lost(OwnerLoss::Cleared, 200, kStart);
    EXPECT_EQ(keeper.owner(), xcb_window_t{XCB_WINDOW_NONE});
    EXPECT_EQ(keeper.deadline(), kStart + 20ms);
    EXPECT_FALSE(keeper.expire(kStart + 19ms).hasChanged);
    EXPECT_TRUE(keeper.expire(kStart + 20ms).hasChanged);
    EXPECT_FALSE(keeper.deadline());
    EXPECT_EQ(keeper.count(), 3);
}

TEST(ClipboardKeeper, AProgramThatLetsGoForAMomentHasCopiedOnce) {
    ClipboardKeeper keeper = copied();
    keeper.lost(OwnerLoss::Quit, 200, kStart);
    EXPECT_TRUE(keeper.ownedBy(kProgram, 203).hasChanged);
    EXPECT_EQ(keeper.count(), 3);
    EXPECT_FALSE(keeper.expire(kStart + 1s).hasChanged);
}

}  // namespace

}  // namespace quillo::x11

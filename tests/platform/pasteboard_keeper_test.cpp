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

TEST(ClipboardKeeper, RestoresWhatWasKeptOnlyOfAProgramThatQuit) {
    struct Row {
        const char* name;
        OwnerLoss loss;
        bool isKept;
        bool isRestored;
    };
    for (const Row& row : {Row{"quit, kept", OwnerLoss::Quit, true, true},
                           Row{"quit, not kept", OwnerLoss::Quit, false, false},
                           Row{"cleared, kept", OwnerLoss::Cleared, true, false}}) {
        SCOPED_TRACE(row.name);
        ClipboardKeeper keeper = copied();
        EXPECT_FALSE(
            keeper.settle(2, row.isKept ? std::optional(kKept) : std::nullopt).restoration);
        keeper.lost(row.loss, 200, kStart);
        const auto outcome = keeper.expire(kStart + 20ms);
        EXPECT_EQ(outcome.restoration.has_value(), row.isRestored);
        EXPECT_EQ(outcome.hasChanged, !row.isRestored) << "a restoration is one change, later";
        if (outcome.restoration) {
            EXPECT_EQ(outcome.restoration->time, 200U) << "not later than what came since";
        }
        EXPECT_FALSE(keeper.settle(2, kKept).restoration) << "it was said already";
    }
}

TEST(ClipboardKeeper, SettlesLateOnlyForTheCopyWhoseProgramQuit) {
    ClipboardKeeper keeper = copied();
    keeper.lost(OwnerLoss::Quit, 200, kStart);
    EXPECT_TRUE(keeper.expire(kStart + 20ms).hasChanged);
    EXPECT_FALSE(keeper.settle(3, std::nullopt).restoration);
    EXPECT_FALSE(keeper.settle(1, kKept).restoration);
    ClipboardKeeper overtaken = keeper;
    EXPECT_TRUE(keeper.settle(2, kKept).restoration);
    EXPECT_TRUE(overtaken.ownedBy(kProgram + 1, 300).hasChanged);
    EXPECT_FALSE(overtaken.settle(2, kKept).restoration);
}

}  // namespace

}  // namespace quillo::x11

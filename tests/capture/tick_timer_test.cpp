// SPDX-License-Identifier: MIT
// The timer of the capture loop: it rests until armed, and never ticks twice at once.
#include <gtest/gtest.h>

#include <atomic>

#include "platform/thread_tick_timer.h"
#include "support/wait_until.h"

using namespace std::chrono_literals;

namespace quillo::testing {
namespace {

TEST(ThreadTickTimer, TicksAtItsStartAndThenOnlyWhenArmed) {
    ThreadTickTimer timer;
    std::atomic<int> ticks = 0;
    timer.start(1ms, [&] { ++ticks; });
    ASSERT_TRUE(waitUntil([&] { return ticks == 1; }));
    EXPECT_FALSE(waitUntil([&] { return ticks > 1; }, 50ms));
    timer.arm();
    timer.arm();
    ASSERT_TRUE(waitUntil([&] { return ticks == 2; }));
    EXPECT_FALSE(waitUntil([&] { return ticks > 2; }, 50ms));
}

TEST(ThreadTickTimer, ATickOnDemandDoesNotWaitForTheGrid) {
    ThreadTickTimer timer;
    std::atomic<int> ticks = 0;
    timer.start(1h, [&] { ++ticks; });
    ASSERT_TRUE(waitUntil([&] { return ticks == 1; }));
    timer.arm();
    EXPECT_FALSE(waitUntil([&] { return ticks > 1; }, 30ms));
    timer.fireNow();
    EXPECT_TRUE(waitUntil([&] { return ticks == 2; }));
}

TEST(ThreadTickTimer, WhatComesDuringATickIsNotLostAndRunsAfterIt) {
    ThreadTickTimer timer;
    std::atomic<int> running = 0;
    std::atomic<int> most = 0;
    std::atomic<int> ticks = 0;
    timer.start(1ms, [&] {
        most = std::max(most.load(), ++running);
        if (++ticks == 1) {
            timer.fireNow();
            timer.arm();
        }
        --running;
    });
    ASSERT_TRUE(waitUntil([&] { return ticks >= 2; }));
    EXPECT_EQ(most, 1);
    timer.stop();
    const int atStop = ticks;
    timer.arm();
    EXPECT_FALSE(waitUntil([&] { return ticks != atStop; }, 30ms));
}

}  // namespace
}  // namespace quillo::testing

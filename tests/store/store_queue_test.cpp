// SPDX-License-Identifier: MIT
#include "model/store/store_queue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <vector>

#include "support/wait_until.h"

using namespace std::chrono_literals;
using quillo::StoreQueue;
using quillo::testing::waitUntil;

namespace {

constexpr StoreQueue::Delays kNever{1h, 1h};

TEST(StoreQueueTest, RunsJobsInOrderAndFinishesThemBeforeItGoes) {
    std::vector<int> done;
    int tidied = 0;
    {
        StoreQueue queue([&] { return ++tidied > 0; }, kNever);
        for (int i = 0; i < 100; ++i) {
            queue.post([&done, i] { done.push_back(i); });
        }
        queue.post([&] { queue.post([&done] { done.push_back(100); }); });
        queue.requestTidyUp();
    }
    ASSERT_EQ(done.size(), 101U);
    EXPECT_TRUE(std::ranges::is_sorted(done));
    EXPECT_EQ(tidied, 1);
}

TEST(StoreQueueTest, TidiesUpByItselfOnceForManyRequests) {
    std::atomic<int> tidied = 0;
    StoreQueue queue([&] { return ++tidied > 0; }, {5ms, 1h});
    queue.post([&] {
        for (int i = 0; i < 10; ++i) {
            queue.requestTidyUp();
        }
    });
    EXPECT_TRUE(waitUntil([&] { return tidied == 1; }));
    queue.waitUntilIdle();
    EXPECT_EQ(tidied, 1);
}

TEST(StoreQueueTest, WorkThatNeverEndsDoesNotPutTidyingOffForEver) {
    std::atomic<int> tidied = 0;
    StoreQueue queue([&] { return ++tidied > 0; }, {1h, 5ms});
    queue.requestTidyUp();
    EXPECT_TRUE(waitUntil([&] { return tidied == 1; }));
}

TEST(StoreQueueTest, TriesAgainWhenTidyingDidNotSucceed) {
    std::atomic<int> attempts = 0;
    StoreQueue queue([&] { return ++attempts == 3; }, {1ms, 1ms});
    queue.requestTidyUp();
    EXPECT_TRUE(waitUntil([&] { return attempts == 3; }));
    queue.waitUntilIdle();
    EXPECT_EQ(attempts, 3);
}

TEST(StoreQueueTest, WaitingForIdlenessDoesTheTidyingThatIsDueLater) {
    std::atomic<int> attempts = 0;
    StoreQueue queue([&] { return ++attempts > 1; }, kNever);
    queue.post([&] { queue.requestTidyUp(); });
    queue.waitUntilIdle();
    EXPECT_EQ(attempts, 1) << "a failure does not keep it waiting";
    queue.waitUntilIdle();
    EXPECT_EQ(attempts, 2);
}

}  // namespace

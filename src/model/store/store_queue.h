// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace quillo {

/// A thread that runs jobs in the order in which they were posted, and tidies up when it has had
/// nothing to do for a moment. Any thread may call it. Destruction finishes every posted job.
class StoreQueue final {
public:
    using Job = std::move_only_function<void()>;

    /// How long tidying waits: for a time without work, but no longer in all than the second.
    struct Delays {
        std::chrono::milliseconds quiet{500};
        std::chrono::milliseconds longest{5'000};
    };

    /// tidyUp runs on the queue's thread; false asks for another attempt later.
    explicit StoreQueue(std::move_only_function<bool()> tidyUp);
    StoreQueue(std::move_only_function<bool()> tidyUp, Delays delays);
    ~StoreQueue();
    StoreQueue(const StoreQueue&) = delete;
    StoreQueue& operator=(const StoreQueue&) = delete;

    void post(Job job);
    /// Has tidyUp run when there has been no work for a moment. Any number of requests before
    /// that are one.
    void requestTidyUp();
    /// Waits for every job posted so far; a tidying that is due later is done at once.
    void waitUntilIdle();
    /// Does everything that was posted or is due later and ends the thread.
    void finish();

private:
    using Moment = std::chrono::steady_clock::time_point;

    void loop();
    void runJob(std::unique_lock<std::mutex>& lock);
    void runTidyUp(std::unique_lock<std::mutex>& lock);
    bool isTidyUpDue() const;
    Moment tidyUpDue() const;

    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::condition_variable m_idle;
    std::deque<Job> m_jobs;
    std::move_only_function<bool()> m_tidyUp;
    Delays m_delays;
    Moment m_latestWork;
    Moment m_tidyUpRequested;
    bool m_tidyUpWanted = false;
    bool m_tidyUpForced = false;
    bool m_isBusy = false;
    bool m_isStopping = false;
    std::jthread m_thread;  // Last: it uses everything above.
};

}  // namespace quillo

// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

#include "platform/tick_timer.h"

namespace quillo {

/// A TickTimer on a thread that sleeps without wake-ups until it is armed.
class ThreadTickTimer final : public TickTimer {
public:
    ThreadTickTimer() = default;
    ~ThreadTickTimer() override;

    void start(std::chrono::milliseconds period, std::function<void()> handler) override;
    void stop() override;
    void arm() override;
    void fireNow() override;

private:
    enum class Request { None, AtGridPoint, Now };

    void run(const std::stop_token& token);

    std::mutex m_mutex;
    std::condition_variable_any m_wakeUp;
    Request m_request = Request::None;
    std::chrono::milliseconds m_period{0};
    std::chrono::steady_clock::time_point m_gridStart;
    std::function<void()> m_handler;
    std::jthread m_thread;
};

}  // namespace quillo

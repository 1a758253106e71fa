// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <functional>
#include <utility>

#include "platform/tick_timer.h"

namespace quillo::testing {

/// A tick timer that ticks when the test says so. start() ticks at once, as the real one does.
class ManualTickTimer final : public TickTimer {
public:
    void start(std::chrono::milliseconds period, std::function<void()> handler) override {
        m_period = period;
        m_handler = std::move(handler);
        ++startCount;
        m_handler();
    }
    void stop() override { m_handler = nullptr; }
    void arm() override { ++armCount; }
    void fireNow() override { ++fireCount; }

    /// Ticks if a change or a request armed the timer; true when it did.
    bool tick() {
        const bool isDue = m_handler && (armCount.exchange(0) + fireCount.exchange(0)) > 0;
        if (isDue) {
            m_handler();
        }
        return isDue;
    }

    [[nodiscard]] std::chrono::milliseconds period() const { return m_period; }

    int startCount = 0;
    std::atomic<int> armCount = 0;
    std::atomic<int> fireCount = 0;

private:
    std::chrono::milliseconds m_period{0};
    std::function<void()> m_handler;
};

}  // namespace quillo::testing

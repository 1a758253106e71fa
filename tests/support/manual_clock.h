// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <chrono>

#include "base/clock.h"

namespace quillo::testing {

/// A clock that stands still until it is moved. Thread-safe.
class ManualClock final : public Clock {
public:
    [[nodiscard]] Timestamp now() const override { return m_now.load(); }
    void set(Timestamp now) { m_now = now; }
    void advance(std::chrono::microseconds step) { m_now = m_now.load() + step; }

private:
    std::atomic<Timestamp> m_now{Timestamp{std::chrono::seconds(1'700'000'000)}};
};

}  // namespace quillo::testing

// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

namespace quillo {

/// A moment in UTC, to the microsecond; what the store keeps.
using Timestamp = std::chrono::sys_time<std::chrono::microseconds>;

/// Where the present moment comes from. Thread-safe.
class Clock {
public:
    virtual ~Clock() = default;
    [[nodiscard]] virtual Timestamp now() const = 0;
};

/// The system's clock.
class SystemClock final : public Clock {
public:
    [[nodiscard]] Timestamp now() const override;
};

/// One moment for ever, for work that is done later than it is dated.
class FixedClock final : public Clock {
public:
    explicit FixedClock(Timestamp now) : m_now(now) {}
    [[nodiscard]] Timestamp now() const override { return m_now; }

private:
    Timestamp m_now;
};

}  // namespace quillo

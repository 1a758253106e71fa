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

}  // namespace quillo

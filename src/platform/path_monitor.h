// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>

namespace quillo {

/// Tells whether this machine has a way to the network. Any thread; no call waits.
class PathMonitor {
public:
    using Callback = std::move_only_function<void(bool isSatisfied)>;

    virtual ~PathMonitor() = default;

    /// Looks once. The callback runs once, later, on a thread of the monitor's own and about
    /// within `patience`; where nobody can tell, false. It is dropped when the monitor goes.
    virtual void check(std::chrono::milliseconds patience, Callback callback) = 0;
};

}  // namespace quillo

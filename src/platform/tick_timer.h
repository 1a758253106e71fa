// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>

namespace quillo {

/// A repeating timer on a worker thread of its own that rests until it is armed: after arm() the
/// handler runs once at the next point of the period's grid, then the timer rests again, so a
/// quiet desktop costs no wake-ups. The handler never runs concurrently with itself.
class TickTimer {
public:
    virtual ~TickTimer() = default;

    /// Starts the grid now; the handler runs at once for the first time.
    virtual void start(std::chrono::milliseconds period, std::function<void()> handler) = 0;

    /// Ends it. No handler runs after stop has returned; a running one is waited for.
    virtual void stop() = 0;

    /// Makes the handler run at the next grid point. Any thread.
    virtual void arm() = 0;

    /// Makes the handler run as soon as the worker is free. Any thread; returns at once.
    virtual void fireNow() = 0;
};

}  // namespace quillo

// SPDX-License-Identifier: MIT
#pragma once

#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "platform/path_monitor.h"

namespace quillo::testing {

/// A network that is as the test says. Answers when answer() is called.
class FakePathMonitor final : public PathMonitor {
public:
    void check(std::chrono::milliseconds patience, Callback callback) override {
        const std::lock_guard lock(m_mutex);
        m_patience = patience;
        m_callbacks.push_back(std::move(callback));
    }

    /// Answers every check so far; false when there was none.
    bool answer(bool isSatisfied) {
        std::vector<Callback> callbacks;
        {
            const std::lock_guard lock(m_mutex);
            callbacks.swap(m_callbacks);
        }
        for (Callback& callback : callbacks) {
            callback(isSatisfied);
        }
        return !callbacks.empty();
    }

    [[nodiscard]] std::optional<std::chrono::milliseconds> patience() const {
        const std::lock_guard lock(m_mutex);
        return m_patience;
    }

private:
    mutable std::mutex m_mutex;
    std::vector<Callback> m_callbacks;
    std::optional<std::chrono::milliseconds> m_patience;
};

}  // namespace quillo::testing

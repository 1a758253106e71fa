// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <chrono>
#include <thread>

namespace quillo::testing {

/// Runs the event loop until the condition holds or the deadline passes; true when it holds.
template <typename Condition>
[[nodiscard]] bool waitUntil(Condition condition,
                             std::chrono::milliseconds deadline = std::chrono::seconds(10)) {
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > deadline.count()) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

}  // namespace quillo::testing

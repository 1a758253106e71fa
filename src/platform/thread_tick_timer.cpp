// SPDX-License-Identifier: MIT
#include "platform/thread_tick_timer.h"

#include <utility>

namespace quillo {
namespace {

using SteadyTime = std::chrono::steady_clock::time_point;

SteadyTime nextGridPoint(SteadyTime gridStart, std::chrono::milliseconds period, SteadyTime now) {
    const auto periods = (now - gridStart) / period + 1;
    return gridStart + periods * period;
}

}  // namespace

ThreadTickTimer::~ThreadTickTimer() {
    stop();
}

void ThreadTickTimer::start(std::chrono::milliseconds period, std::function<void()> handler) {
    stop();
    const std::scoped_lock lock(m_mutex);
    m_period = period;
    m_handler = std::move(handler);
    m_gridStart = std::chrono::steady_clock::now();
    m_request = Request::Now;
    m_thread = std::jthread([this](const std::stop_token& token) { run(token); });
}

void ThreadTickTimer::stop() {
    if (m_thread.joinable()) {
        m_thread.request_stop();
        m_thread.join();
    }
}

void ThreadTickTimer::arm() {
    const std::scoped_lock lock(m_mutex);
    if (m_request == Request::None) {
        m_request = Request::AtGridPoint;
        m_wakeUp.notify_one();
    }
}

void ThreadTickTimer::fireNow() {
    const std::scoped_lock lock(m_mutex);
    m_request = Request::Now;
    m_wakeUp.notify_one();
}

void ThreadTickTimer::run(const std::stop_token& token) {
    std::unique_lock lock(m_mutex);
    while (true) {
        m_wakeUp.wait(lock, token, [this] { return m_request != Request::None; });
        if (!token.stop_requested() && m_request == Request::AtGridPoint) {
            const SteadyTime due =
                nextGridPoint(m_gridStart, m_period, std::chrono::steady_clock::now());
            m_wakeUp.wait_until(lock, token, due, [this] { return m_request == Request::Now; });
        }
        if (token.stop_requested()) {
            return;
        }
        // Cleared first: a change that comes while the handler runs arms the next point.
        m_request = Request::None;
        lock.unlock();
        m_handler();
        lock.lock();
    }
}

}  // namespace quillo

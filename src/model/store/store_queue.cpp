// SPDX-License-Identifier: MIT
#include "model/store/store_queue.h"

#include <algorithm>

namespace quillo {

StoreQueue::StoreQueue(std::move_only_function<bool()> tidyUp)
    : StoreQueue(std::move(tidyUp), Delays{}) {}

StoreQueue::StoreQueue(std::move_only_function<bool()> tidyUp, Delays delays)
    : m_tidyUp(std::move(tidyUp)), m_delays(delays), m_thread([this] { loop(); }) {}

StoreQueue::~StoreQueue() {
    finish();
}

void StoreQueue::finish() {
    {
        const std::lock_guard lock(m_mutex);
        m_isStopping = true;
    }
    m_wake.notify_all();
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

void StoreQueue::post(Job job) {
    {
        const std::lock_guard lock(m_mutex);
        m_jobs.push_back(std::move(job));
    }
    m_wake.notify_all();
}

void StoreQueue::requestTidyUp() {
    {
        const std::lock_guard lock(m_mutex);
        const Moment now = std::chrono::steady_clock::now();
        m_latestWork = now;
        if (!m_tidyUpWanted) {
            m_tidyUpWanted = true;
            m_tidyUpRequested = now;
        }
    }
    m_wake.notify_all();
}

void StoreQueue::waitUntilIdle() {
    std::unique_lock lock(m_mutex);
    // The tidying that a job asks for while we wait is done too.
    m_idle.wait(lock, [this] { return m_jobs.empty() && !m_isBusy; });
    m_tidyUpForced = m_tidyUpWanted;
    m_wake.notify_all();
    m_idle.wait(lock, [this] { return m_jobs.empty() && !m_isBusy && !m_tidyUpForced; });
}

void StoreQueue::loop() {
    std::unique_lock lock(m_mutex);
    for (;;) {
        if (!m_jobs.empty()) {
            runJob(lock);
        } else if (m_tidyUpWanted && isTidyUpDue()) {
            runTidyUp(lock);
        } else if (m_isStopping) {
            return;
        } else if (m_tidyUpWanted) {
            m_wake.wait_until(lock, tidyUpDue());
        } else {
            m_wake.wait(lock);
        }
    }
}

void StoreQueue::runJob(std::unique_lock<std::mutex>& lock) {
    {
        Job job = std::move(m_jobs.front());
        m_jobs.pop_front();
        m_isBusy = true;
        lock.unlock();
        job();
    }
    lock.lock();
    m_isBusy = false;
    m_latestWork = std::chrono::steady_clock::now();
    m_idle.notify_all();
}

void StoreQueue::runTidyUp(std::unique_lock<std::mutex>& lock) {
    m_tidyUpWanted = false;
    m_isBusy = true;
    lock.unlock();
    const bool done = m_tidyUp();
    lock.lock();
    m_isBusy = false;
    m_tidyUpForced = false;
    if (!done && !m_isStopping && !m_tidyUpWanted) {
        m_tidyUpWanted = true;
        m_latestWork = m_tidyUpRequested = std::chrono::steady_clock::now();
    }
    m_idle.notify_all();
}

bool StoreQueue::isTidyUpDue() const {
    return m_isStopping || m_tidyUpForced || std::chrono::steady_clock::now() >= tidyUpDue();
}

StoreQueue::Moment StoreQueue::tidyUpDue() const {
    return std::min(m_latestWork + m_delays.quiet, m_tidyUpRequested + m_delays.longest);
}

}  // namespace quillo

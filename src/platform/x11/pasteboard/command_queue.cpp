// SPDX-License-Identifier: MIT
#include "platform/x11/pasteboard/command_queue.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cstdint>
#include <utility>

namespace quillo::x11 {

CommandQueue::CommandQueue() : m_event(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

bool CommandQueue::post(Command command) {
    const std::scoped_lock lock(m_mutex);
    if (m_isClosed) {
        return false;
    }
    m_commands.push_back(std::move(command));
    const std::uint64_t one = 1;
    // It can fail only when the counter is full, and then the thread is awake already.
    [[maybe_unused]] const ssize_t written = ::write(m_event.get(), &one, sizeof one);
    return true;
}

std::deque<CommandQueue::Command> CommandQueue::take() {
    const std::scoped_lock lock(m_mutex);
    std::uint64_t count = 0;
    [[maybe_unused]] const ssize_t size = ::read(m_event.get(), &count, sizeof count);
    return std::exchange(m_commands, {});
}

std::deque<CommandQueue::Command> CommandQueue::close() {
    const std::scoped_lock lock(m_mutex);
    m_isClosed = true;
    return std::exchange(m_commands, {});
}

}  // namespace quillo::x11

// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <functional>
#include <mutex>

#include "base/unique_fd.h"

namespace quillo::x11 {

class PasteboardThread;

/// Work for the pasteboard's thread. It outlives the thread, so that a source that is still held
/// finds it closed instead of gone. Thread-safe.
class CommandQueue final {
public:
    using Command = std::function<void(PasteboardThread&)>;

    CommandQueue();

    /// False when the thread has ended; the command is then dropped without being run.
    [[nodiscard]] bool post(Command command);

    /// Everything posted so far; the descriptor becomes unreadable.
    [[nodiscard]] std::deque<Command> take();

    /// Refuses every later command and gives back those that were not taken.
    [[nodiscard]] std::deque<Command> close();

    /// Readable while commands wait.
    [[nodiscard]] int fd() const { return m_event.get(); }

private:
    std::mutex m_mutex;
    std::deque<Command> m_commands;
    bool m_isClosed = false;
    UniqueFd m_event;
};

}  // namespace quillo::x11

// SPDX-License-Identifier: MIT
#include "app/exit_guard.h"

#include <utility>

namespace quillo {
namespace {

// A handler of std::atexit would come too late: static objects made after it was registered are
// destroyed before it runs, while threads still use them. What belongs to the thread that calls
// exit() is destroyed before all of them.
struct EndOfThread {
    std::function<void()> handler;

    ~EndOfThread() {
        if (const auto run = std::exchange(handler, nullptr)) {
            run();
        }
    }
};

EndOfThread& endOfThread() {
    thread_local EndOfThread end;
    return end;
}

}  // namespace

ExitGuard::ExitGuard(std::function<void()> handler) {
    endOfThread().handler = std::move(handler);
}

ExitGuard::~ExitGuard() {
    endOfThread().handler = nullptr;
}

}  // namespace quillo

// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>
#include <functional>

namespace quillo {

/// Runs a handler when its own thread, the main one, calls exit() while the guard lives. Qt does
/// that, from inside the event loop and without unwinding, as soon as it finds its connection to
/// the display server broken; the handler is the last chance to end in order. It must not return:
/// behind it static objects are destroyed that other threads still use.
class ExitGuard final {
public:
    explicit ExitGuard(std::function<void()> handler);
    ~ExitGuard();
    Q_DISABLE_COPY_MOVE(ExitGuard)
};

}  // namespace quillo

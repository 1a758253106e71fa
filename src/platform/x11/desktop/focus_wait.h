// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>
#include <chrono>
#include <functional>
#include <memory>

#include "platform/x11/desktop/window_queries.h"

namespace quillo::x11 {

/// Waits until a window has the keyboard focus, on a connection of its own and the event loop of
/// the thread that made it. Nothing wakes it up while it does not wait.
class FocusWait final : public QObject {
public:
    [[nodiscard]] static Result<std::unique_ptr<FocusWait>> create(const QByteArray& displayName);

    /// Calls back once, never from inside this call. Replaces a wait that is under way, which
    /// then never calls back.
    void start(xcb_window_t window, std::chrono::milliseconds deadline,
               std::function<void(bool)> callback);

private:
    explicit FocusWait(Connection connection);

    void check();
    void finish(bool hasFocus);
    void select(xcb_window_t window, uint32_t windowEvents, uint32_t rootEvents);
    /// Whether there was any event.
    bool drainEvents();

    Connection m_connection;
    WindowQueries m_windows;
    QSocketNotifier m_notifier;
    QTimer m_deadline;
    QTimer m_firstCheck;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    std::function<void(bool)> m_callback;
};

}  // namespace quillo::x11

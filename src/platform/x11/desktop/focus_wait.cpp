// SPDX-License-Identifier: MIT
#include "platform/x11/desktop/focus_wait.h"

#include <utility>

namespace quillo::x11 {

Result<std::unique_ptr<FocusWait>> FocusWait::create(const QByteArray& displayName) {
    Result<Connection> connection = connectToServer(displayName);
    if (!connection) {
        return std::unexpected(connection.error());
    }
    return std::unique_ptr<FocusWait>(new FocusWait(std::move(*connection)));
}

FocusWait::FocusWait(Connection connection)
    : m_connection(std::move(connection)),
      m_windows(m_connection),
      m_notifier(xcb_get_file_descriptor(m_connection.get()), QSocketNotifier::Read) {
    m_notifier.setEnabled(false);
    m_deadline.setSingleShot(true);
    m_deadline.setTimerType(Qt::PreciseTimer);
    m_firstCheck.setSingleShot(true);
    connect(&m_notifier, &QSocketNotifier::activated, this, &FocusWait::check);
    connect(&m_firstCheck, &QTimer::timeout, this, &FocusWait::check);
    connect(&m_deadline, &QTimer::timeout, this, [this] { finish(false); });
}

void FocusWait::start(xcb_window_t window, std::chrono::milliseconds deadline,
                      std::function<void(bool)> callback) {
    if (m_window != XCB_WINDOW_NONE) {
        select(m_window, XCB_EVENT_MASK_NO_EVENT, XCB_EVENT_MASK_NO_EVENT);
    }
    m_window = window;
    m_callback = std::move(callback);
    select(window, XCB_EVENT_MASK_FOCUS_CHANGE, XCB_EVENT_MASK_PROPERTY_CHANGE);
    m_notifier.setEnabled(true);
    m_deadline.start(deadline);
    m_firstCheck.start(0);
}

void FocusWait::check() {
    if (!m_callback) {
        return;
    }
    if (xcb_connection_has_error(m_connection.get()) != 0) {
        // A broken connection stays readable for ever; the deadline answers.
        m_notifier.setEnabled(false);
        return;
    }
    // The answer to a question may bring events with it, of which the socket says nothing more.
    do {
        drainEvents();
        if (m_windows.hasFocus(m_window)) {
            finish(true);
            return;
        }
    } while (drainEvents());
}

void FocusWait::finish(bool hasFocus) {
    m_firstCheck.stop();
    m_deadline.stop();
    m_notifier.setEnabled(false);
    select(m_window, XCB_EVENT_MASK_NO_EVENT, XCB_EVENT_MASK_NO_EVENT);
    m_window = XCB_WINDOW_NONE;
    if (const auto callback = std::exchange(m_callback, nullptr)) {
        callback(hasFocus);
    }
}

void FocusWait::select(xcb_window_t window, uint32_t windowEvents, uint32_t rootEvents) {
    xcb_change_window_attributes(m_connection.get(), window, XCB_CW_EVENT_MASK, &windowEvents);
    xcb_change_window_attributes(m_connection.get(), m_connection.root(), XCB_CW_EVENT_MASK,
                                 &rootEvents);
    xcb_flush(m_connection.get());
}

bool FocusWait::drainEvents() {
    bool hadEvents = false;
    while (const XcbPtr<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
        hadEvents = true;
    }
    return hadEvents;
}

}  // namespace quillo::x11

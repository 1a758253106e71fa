// SPDX-License-Identifier: MIT
#include "platform/x11/desktop/x11_workspace.h"

#include <utility>

#include "platform/x11/desktop/active_window_watch.h"

namespace quillo::x11 {
namespace {

constexpr uint32_t kSourceIsPager = 2;

RunningApplication describe(ApplicationIndex& index, xcb_window_t window,
                            const ProgramTraces& traces) {
    RunningApplication result;
    result.windowId = window;
    result.processId = traces.processId;
    result.windowClass = traces.windowClass;
    result.windowInstance = traces.windowInstance;
    if (const auto installed = index.applicationOfWindow(traces)) {
        result.bundleIdentifier = installed->bundleIdentifier;
        result.localizedName = installed->name;
    }
    return result;
}

}  // namespace

Result<std::unique_ptr<X11Workspace>> X11Workspace::create(ApplicationIndex& index,
                                                           const QByteArray& displayName) {
    Result<Connection> connection = connectToServer(displayName);
    if (!connection) {
        return std::unexpected(connection.error());
    }
    Result<std::unique_ptr<FocusWait>> focusWait = FocusWait::create(displayName);
    if (!focusWait) {
        return std::unexpected(focusWait.error());
    }
    return std::unique_ptr<X11Workspace>(
        new X11Workspace(index, std::move(*connection), std::move(*focusWait), displayName));
}

X11Workspace::X11Workspace(ApplicationIndex& index, Connection connection,
                           std::unique_ptr<FocusWait> focusWait, QByteArray displayName)
    : m_index(index),
      m_connection(std::move(connection)),
      m_windows(m_connection),
      m_timeWindow(xcb_generate_id(m_connection.get())),
      m_focusWait(std::move(focusWait)),
      m_displayName(std::move(displayName)) {
    const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(m_connection.get(), XCB_COPY_FROM_PARENT, m_timeWindow, m_connection.root(),
                      -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
                      XCB_CW_EVENT_MASK, &events);
    xcb_flush(m_connection.get());
}

std::optional<RunningApplication> X11Workspace::frontmostApplication() {
    std::optional<SeenWindow> seen;
    {
        const std::lock_guard lock(m_mutex);
        drainEvents();
        seen = frontWindow();
        if (seen) {
            m_lastSeen = seen->window;
        }
    }
    if (!seen) {
        return std::nullopt;
    }
    return describe(m_index, seen->window, seen->traces);
}

std::optional<X11Workspace::SeenWindow> X11Workspace::frontWindow() {
    const xcb_window_t active = m_windows.activeWindow();
    if (active == XCB_WINDOW_NONE) {
        return std::nullopt;
    }
    if (m_ignored.contains(active)) {
        return windowBehindIgnored();
    }
    const std::optional<ProgramTraces> traces = m_windows.traces(active);
    return traces ? std::optional(SeenWindow{active, *traces}) : std::nullopt;
}

std::optional<X11Workspace::SeenWindow> X11Workspace::windowBehindIgnored() {
    if (m_lastSeen != XCB_WINDOW_NONE) {
        if (const auto traces = m_windows.traces(m_lastSeen)) {
            return SeenWindow{m_lastSeen, *traces};
        }
    }
    for (const xcb_window_t window : m_windows.windowsFromTop()) {
        if (m_ignored.contains(window)) {
            continue;
        }
        if (const auto traces = m_windows.traces(window)) {
            return SeenWindow{window, *traces};
        }
    }
    return std::nullopt;
}

void X11Workspace::ignoreWindow(quint32 windowId) {
    const std::lock_guard lock(m_mutex);
    m_ignored.insert(windowId);
    if (m_lastSeen == windowId) {
        m_lastSeen = XCB_WINDOW_NONE;
    }
}

std::optional<QRect> X11Workspace::frame(const RunningApplication& application) {
    const std::lock_guard lock(m_mutex);
    drainEvents();
    return m_windows.frame(application.windowId);
}

void X11Workspace::activate(const RunningApplication& application) {
    if (application.windowId == XCB_WINDOW_NONE) {
        return;
    }
    const std::lock_guard lock(m_mutex);
    drainEvents();
    if (m_windows.hasWindowManager()) {
        requestActivation(application.windowId);
    } else {
        focusDirectly(application.windowId);
    }
    xcb_flush(m_connection.get());
}

void X11Workspace::requestActivation(xcb_window_t window) {
    // EWMH, "_NET_ACTIVE_WINDOW": the kind of the asking program, the time, its own window.
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = m_windows.atoms().atom("_NET_ACTIVE_WINDOW");
    message.data.data32[0] = kSourceIsPager;
    message.data.data32[1] = serverTime();
    xcb_send_event(m_connection.get(), 0, m_connection.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&message));
}

void X11Workspace::focusDirectly(xcb_window_t window) {
    const uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(m_connection.get(), window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    xcb_set_input_focus(m_connection.get(), XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
}

xcb_timestamp_t X11Workspace::serverTime() {
    // ICCCM 2.1: writing nothing to a property makes the server tell its time. An append would fail
    // if another program had given the property another type.
    const xcb_atom_t atom = m_windows.atoms().atom("_QUILLO_TIME");
    xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, m_timeWindow, atom,
                        XCB_ATOM_INTEGER, 32, 0, nullptr);
    waitForServer(m_connection.get());
    xcb_timestamp_t time = XCB_CURRENT_TIME;
    while (const XcbPtr<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
        if ((event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY) {
            time = reinterpret_cast<const xcb_property_notify_event_t*>(event.get())->time;
        }
    }
    return time;
}

void X11Workspace::drainEvents() {
    // Errors of requests without a reply, about windows that were gone.
    while (const XcbPtr<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
    }
}

void X11Workspace::whenFocused(const RunningApplication& application,
                               std::chrono::milliseconds deadline,
                               std::function<void(bool)> callback) {
    m_focusWait->start(application.windowId, deadline, std::move(callback));
}

std::unique_ptr<ActivationWatch> X11Workspace::watchActivation(std::function<void()> changed) {
    return ActiveWindowWatch::create(m_displayName, std::move(changed));
}

std::optional<InstalledApplication> X11Workspace::installedApplication(
    const QString& bundleIdentifier) {
    return m_index.application(bundleIdentifier);
}

}  // namespace quillo::x11

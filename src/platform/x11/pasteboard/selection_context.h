// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <deque>
#include <functional>
#include <optional>

#include "platform/x11/pasteboard/pasteboard_limits.h"
#include "platform/x11/xcb_support.h"

namespace quillo::x11 {

inline constexpr std::size_t kRingSize = 16;

/// The atoms of the selection protocol (ICCCM 2, freedesktop ClipboardManager).
struct SelectionAtoms {
    xcb_atom_t clipboard = XCB_ATOM_NONE;
    xcb_atom_t clipboardManager = XCB_ATOM_NONE;
    xcb_atom_t targets = XCB_ATOM_NONE;
    xcb_atom_t timestamp = XCB_ATOM_NONE;
    xcb_atom_t multiple = XCB_ATOM_NONE;
    xcb_atom_t saveTargets = XCB_ATOM_NONE;
    xcb_atom_t incr = XCB_ATOM_NONE;
    xcb_atom_t atomPair = XCB_ATOM_NONE;
    xcb_atom_t null = XCB_ATOM_NONE;
    xcb_atom_t manager = XCB_ATOM_NONE;
    xcb_atom_t timeProbe = XCB_ATOM_NONE;
    xcb_atom_t handOver = XCB_ATOM_NONE;
    std::array<xcb_atom_t, kRingSize> ring{};  ///< Properties that answers arrive in.
};

/// A property of a window, whole.
struct WindowProperty {
    xcb_atom_t type = XCB_ATOM_NONE;
    std::uint8_t format = 8;
    QByteArray bytes;
    bool isTooLarge = false;  ///< The bytes were not taken then.
};

/// The pasteboard's connection and its one long-lived window, which asks, owns and receives.
struct SelectionContext {
    explicit SelectionContext(Connection opened);

    [[nodiscard]] xcb_connection_t* xcb() const { return connection.get(); }

    /// Reads a property, at most maxBytes; one round trip to the server. None when it is gone.
    [[nodiscard]] std::optional<WindowProperty> property(xcb_window_t of, xcb_atom_t name,
                                                         qsizetype maxBytes, bool andDelete);

    [[nodiscard]] xcb_window_t ownerOf(xcb_atom_t selection);

    Connection connection;
    AtomTable atoms;
    SelectionAtoms names;
    xcb_window_t window = XCB_WINDOW_NONE;
    qsizetype chunkBytes = 0;  ///< The largest property that is written at once.
    TimePoint now;             ///< When the event that is being handled was taken up.
};

/// Finds out the server's time without waiting: owning a selection needs a timestamp (ICCCM 2.1).
class TimeProbe final {
public:
    using Answer = std::function<void(xcb_timestamp_t)>;

    explicit TimeProbe(SelectionContext& context) : m_context(context) {}

    void ask(Answer answer);
    /// True when the event was an answer to a question of ours.
    bool propertyChanged(const xcb_property_notify_event_t& event);

private:
    SelectionContext& m_context;
    std::deque<Answer> m_waiting;
};

/// True when the first server time is earlier; server time wraps around every 49 days.
[[nodiscard]] inline bool isEarlier(xcb_timestamp_t a, xcb_timestamp_t b) {
    return static_cast<std::int32_t>(a - b) < 0;
}

}  // namespace quillo::x11

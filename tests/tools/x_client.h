// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

#include <cstdio>
#include <utility>

#include "platform/x11/xcb_support.h"

namespace quillo::testing {

/// What programs that talk to the display server themselves have in common.
class XClient {
public:
    using Event = x11::XcbPtr<xcb_generic_event_t>;

    explicit XClient(x11::Connection connection)
        : m_connection(std::move(connection)), m_atoms(m_connection.get()) {}

    [[nodiscard]] xcb_connection_t* server() const { return m_connection.get(); }
    [[nodiscard]] xcb_window_t root() const { return m_connection.root(); }
    [[nodiscard]] xcb_atom_t atom(const QByteArray& name) { return m_atoms.atom(name); }
    [[nodiscard]] QByteArray nameOf(xcb_atom_t atom) { return m_atoms.name(atom); }

    /// A window that nobody sees, which is told of those events.
    [[nodiscard]] xcb_window_t makeWindow(std::uint32_t events = 0) {
        const xcb_window_t window = xcb_generate_id(server());
        xcb_create_window(server(), XCB_COPY_FROM_PARENT, window, root(), 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                          &events);
        return window;
    }
    /// None when nobody owns it.
    [[nodiscard]] xcb_window_t ownerOf(const QByteArray& selection) {
        const x11::XcbPtr<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
            server(), xcb_get_selection_owner(server(), atom(selection)), nullptr));
        return reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
    }
    /// Takes a property off a window; the reply is null when there is no such window.
    [[nodiscard]] x11::XcbPtr<xcb_get_property_reply_t> take(xcb_window_t window,
                                                             xcb_atom_t property) {
        return x11::XcbPtr<xcb_get_property_reply_t>(
            xcb_get_property_reply(server(),
                                   xcb_get_property(server(), 1, window, property,
                                                    XCB_GET_PROPERTY_TYPE_ANY, 0, 0x1fffffff),
                                   nullptr));
    }
    /// Null when the connection is lost.
    [[nodiscard]] Event waitForEvent() {
        xcb_flush(server());
        return Event(xcb_wait_for_event(server()));
    }
    [[nodiscard]] Event nextEvent() { return Event(xcb_poll_for_event(server())); }
    [[nodiscard]] static int typeOf(const xcb_generic_event_t& event) {
        return event.response_type & 0x7f;
    }
    template <typename Specific>
    [[nodiscard]] static const Specific& as(const xcb_generic_event_t& event) {
        return reinterpret_cast<const Specific&>(event);
    }
    /// A line of output, at once.
    static void say(const QByteArray& line) {
        std::puts(line.constData());
        std::fflush(stdout);
    }

private:
    x11::Connection m_connection;
    x11::AtomTable m_atoms;
};

}  // namespace quillo::testing

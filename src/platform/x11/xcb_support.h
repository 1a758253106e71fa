// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

#include <QByteArray>
#include <QHash>
#include <cstdlib>
#include <memory>

#include "base/result.h"

namespace quillo::x11 {

struct FreeDeleter {
    void operator()(void* memory) const { std::free(memory); }
};

/// Owns what an xcb call returned with malloc: a reply, an event, an error.
template <typename T>
using XcbPtr = std::unique_ptr<T, FreeDeleter>;

struct ConnectionDeleter {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};

using ConnectionPtr = std::unique_ptr<xcb_connection_t, ConnectionDeleter>;

/// A connection to the X server with its preferred screen.
struct Connection {
    ConnectionPtr handle;
    xcb_screen_t* screen = nullptr;

    [[nodiscard]] xcb_connection_t* get() const { return handle.get(); }
    [[nodiscard]] xcb_window_t root() const { return screen->root; }
};

/// Connects to the server named by DISPLAY, or by displayName when it is not empty.
[[nodiscard]] Result<Connection> connectToServer(const QByteArray& displayName = {});

/// Returns when the server has done everything that was asked of it over this connection; false
/// when the connection is broken. Events that come along are queued without making the socket
/// readable.
bool waitForServer(xcb_connection_t* connection);

/// Interns atoms and remembers both directions, within bounds; each lookup that is not known costs
/// a round trip. For use by one thread.
class AtomTable final {
public:
    explicit AtomTable(xcb_connection_t* connection) : m_connection(connection) {}

    /// XCB_ATOM_NONE only when the connection is broken.
    [[nodiscard]] xcb_atom_t atom(const QByteArray& name);
    /// Empty for an atom that the server does not know, and for a name beyond 1000 bytes.
    [[nodiscard]] QByteArray name(xcb_atom_t atom);
    /// One round trip for each 64 that are not known yet.
    [[nodiscard]] QList<QByteArray> names(const QList<xcb_atom_t>& atoms);

private:
    [[nodiscard]] QList<QByteArray> namesOfSome(const QList<xcb_atom_t>& atoms);
    [[nodiscard]] QByteArray receiveName(xcb_get_atom_name_cookie_t cookie);
    void remember(xcb_atom_t atom, const QByteArray& name);

    xcb_connection_t* m_connection;
    QHash<QByteArray, xcb_atom_t> m_atoms;
    QHash<xcb_atom_t, QByteArray> m_names;
};

}  // namespace quillo::x11

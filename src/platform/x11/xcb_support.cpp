// SPDX-License-Identifier: MIT
#include "platform/x11/xcb_support.h"

namespace quillo::x11 {

Result<Connection> connectToServer(const QByteArray& displayName) {
    int screenNumber = 0;
    ConnectionPtr handle(
        xcb_connect(displayName.isEmpty() ? nullptr : displayName.constData(), &screenNumber));
    if (xcb_connection_has_error(handle.get()) != 0) {
        return failure(ErrorKind::Failed, QStringLiteral("no connection to the X server"));
    }
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(handle.get()));
    for (; screens.rem > 1 && screenNumber > 0; --screenNumber) {
        xcb_screen_next(&screens);
    }
    return Connection{std::move(handle), screens.data};
}

xcb_atom_t AtomTable::atom(const QByteArray& name) {
    if (const auto known = m_atoms.constFind(name); known != m_atoms.cend()) {
        return *known;
    }
    const auto cookie =
        xcb_intern_atom(m_connection, 0, static_cast<uint16_t>(name.size()), name.constData());
    const XcbPtr<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(m_connection, cookie, nullptr));
    if (!reply) {
        return XCB_ATOM_NONE;
    }
    remember(reply->atom, name);
    return reply->atom;
}

QByteArray AtomTable::name(xcb_atom_t atom) {
    return names({atom}).constFirst();
}

QList<QByteArray> AtomTable::names(const QList<xcb_atom_t>& atoms) {
    QHash<xcb_atom_t, xcb_get_atom_name_cookie_t> cookies;
    for (const xcb_atom_t atom : atoms) {
        if (!m_names.contains(atom) && !cookies.contains(atom)) {
            cookies.insert(atom, xcb_get_atom_name(m_connection, atom));
        }
    }
    for (auto it = cookies.cbegin(); it != cookies.cend(); ++it) {
        xcb_generic_error_t* error = nullptr;
        const XcbPtr<xcb_get_atom_name_reply_t> reply(
            xcb_get_atom_name_reply(m_connection, it.value(), &error));
        const XcbPtr<xcb_generic_error_t> ownedError(error);
        if (reply) {
            remember(it.key(), QByteArray(xcb_get_atom_name_name(reply.get()),
                                          xcb_get_atom_name_name_length(reply.get())));
        }
    }
    QList<QByteArray> result;
    result.reserve(atoms.size());
    for (const xcb_atom_t atom : atoms) {
        result.append(m_names.value(atom));
    }
    return result;
}

void AtomTable::remember(xcb_atom_t atom, const QByteArray& name) {
    m_atoms.insert(name, atom);
    m_names.insert(atom, name);
}

}  // namespace quillo::x11

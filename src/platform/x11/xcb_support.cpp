// SPDX-License-Identifier: MIT
#include "platform/x11/xcb_support.h"

#include <algorithm>
#include <optional>

namespace quillo::x11 {

namespace {

// Any program can make atoms without end, of 64 KiB each.
constexpr qsizetype kNamesAskedAtOnce = 64;
constexpr qsizetype kMostRemembered = 4096;
constexpr int kLongestName = 1000;

}  // namespace

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

bool waitForServer(xcb_connection_t* connection) {
    const XcbPtr<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    return reply != nullptr;
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
    QList<QByteArray> result;
    result.reserve(atoms.size());
    for (qsizetype from = 0; from < atoms.size(); from += kNamesAskedAtOnce) {
        const qsizetype count = std::min(kNamesAskedAtOnce, atoms.size() - from);
        result.append(namesOfSome(atoms.sliced(from, count)));
    }
    return result;
}

QList<QByteArray> AtomTable::namesOfSome(const QList<xcb_atom_t>& atoms) {
    QList<std::optional<xcb_get_atom_name_cookie_t>> cookies;
    QList<QByteArray> result;
    for (const xcb_atom_t atom : atoms) {
        const auto known = m_names.constFind(atom);
        const bool isKnown = known != m_names.cend();
        result.append(isKnown ? *known : QByteArray());
        cookies.append(isKnown ? std::nullopt
                               : std::optional(xcb_get_atom_name(m_connection, atom)));
    }
    for (qsizetype i = 0; i < atoms.size(); ++i) {
        if (cookies.at(i)) {
            result[i] = receiveName(*cookies.at(i));
            remember(atoms.at(i), result.at(i));
        }
    }
    return result;
}

QByteArray AtomTable::receiveName(xcb_get_atom_name_cookie_t cookie) {
    xcb_generic_error_t* error = nullptr;
    const XcbPtr<xcb_get_atom_name_reply_t> reply(
        xcb_get_atom_name_reply(m_connection, cookie, &error));
    const XcbPtr<xcb_generic_error_t> ownedError(error);
    const int length = reply ? xcb_get_atom_name_name_length(reply.get()) : 0;
    return length > 0 && length <= kLongestName
               ? QByteArray(xcb_get_atom_name_name(reply.get()), length)
               : QByteArray();
}

void AtomTable::remember(xcb_atom_t atom, const QByteArray& name) {
    if (name.isEmpty()) {
        return;
    }
    if (m_names.size() >= kMostRemembered) {
        m_atoms.clear();
        m_names.clear();
    }
    m_atoms.insert(name, atom);
    m_names.insert(atom, name);
}

}  // namespace quillo::x11

// SPDX-License-Identifier: MIT
#include "platform/x11/desktop/window_queries.h"

#include <algorithm>
#include <cstring>

namespace quillo::x11 {
namespace {

constexpr uint32_t kLongestPropertyWords = 4096;
constexpr int kDeepestNesting = 64;

QString textOf(const QByteArray& bytes) {
    return QString::fromUtf8(
        bytes.first(std::min(bytes.size(), qsizetype(qstrnlen(bytes, bytes.size())))));
}

}  // namespace

WindowQueries::WindowQueries(const Connection& connection)
    : m_connection(connection.get()), m_root(connection.root()), m_atoms(connection.get()) {}

QList<quint32> WindowQueries::Property::numbers() const {
    QList<quint32> result(bytes.size() / qsizetype(sizeof(quint32)));
    if (!result.isEmpty()) {
        std::memcpy(result.data(), bytes.constData(), size_t(result.size()) * sizeof(quint32));
    }
    return result;
}

xcb_get_property_cookie_t WindowQueries::ask(xcb_window_t window, const QByteArray& name) {
    return xcb_get_property(m_connection, 0, window, m_atoms.atom(name), XCB_GET_PROPERTY_TYPE_ANY,
                            0, kLongestPropertyWords);
}

WindowQueries::Property WindowQueries::answer(xcb_get_property_cookie_t cookie) const {
    const XcbPtr<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(m_connection, cookie, nullptr));
    if (!reply) {
        return {};
    }
    return {true, QByteArray(static_cast<const char*>(xcb_get_property_value(reply.get())),
                             xcb_get_property_value_length(reply.get()))};
}

WindowQueries::Property WindowQueries::property(xcb_window_t window, const QByteArray& name) {
    return answer(ask(window, name));
}

bool WindowQueries::hasWindowManager() {
    // After a crash the root's property stays, but names a window that is gone.
    const QList<quint32> check = property(m_root, "_NET_SUPPORTING_WM_CHECK").numbers();
    return !check.isEmpty() &&
           property(check.constFirst(), "_NET_SUPPORTING_WM_CHECK").numbers() == check;
}

xcb_window_t WindowQueries::activeWindow() {
    if (!hasWindowManager()) {
        return windowWithFocus(Clients::TopLevel);
    }
    const QList<quint32> active = property(m_root, "_NET_ACTIVE_WINDOW").numbers();
    return active.isEmpty() || active.constFirst() == XCB_WINDOW_NONE
               ? windowWithFocus(Clients::Managed)
               : active.constFirst();
}

std::optional<ProgramTraces> WindowQueries::traces(xcb_window_t window) {
    const auto classCookie = ask(window, "WM_CLASS");
    const auto processCookie = ask(window, "_NET_WM_PID");
    const auto gtkCookie = ask(window, "_GTK_APPLICATION_ID");
    const Property names = answer(classCookie);
    const QList<quint32> process = answer(processCookie).numbers();
    const Property gtk = answer(gtkCookie);
    if (!names.windowExists) {
        return std::nullopt;
    }
    // ICCCM 4.1.2.5: the instance, a zero byte, the class, a zero byte.
    const qsizetype separator = names.bytes.indexOf('\0');
    ProgramTraces result;
    result.windowInstance = textOf(names.bytes);
    result.windowClass = separator < 0 ? QString() : textOf(names.bytes.sliced(separator + 1));
    result.gtkApplicationId = textOf(gtk.bytes);
    result.processId = process.isEmpty() ? 0 : process.constFirst();
    return result;
}

QList<xcb_window_t> WindowQueries::windowsFromTop() {
    QList<xcb_window_t> result = property(m_root, "_NET_CLIENT_LIST_STACKING").numbers();
    std::ranges::reverse(result);
    result.removeIf([this](xcb_window_t window) { return !isOrdinary(window); });
    return result;
}

bool WindowQueries::isOrdinary(xcb_window_t window) {
    const auto typeCookie = ask(window, "_NET_WM_WINDOW_TYPE");
    const auto stateCookie = ask(window, "_NET_WM_STATE");
    const Property type = answer(typeCookie);
    const QList<quint32> states = answer(stateCookie).numbers();
    const QList<quint32> types = type.numbers();
    return type.windowExists && !types.contains(m_atoms.atom("_NET_WM_WINDOW_TYPE_DOCK")) &&
           !types.contains(m_atoms.atom("_NET_WM_WINDOW_TYPE_DESKTOP")) &&
           !states.contains(m_atoms.atom("_NET_WM_STATE_HIDDEN"));
}

xcb_window_t WindowQueries::focusWindow() const {
    const XcbPtr<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    const bool isWindow = reply && reply->focus != XCB_INPUT_FOCUS_NONE &&
                          reply->focus != XCB_INPUT_FOCUS_POINTER_ROOT;
    return isWindow ? reply->focus : xcb_window_t{XCB_WINDOW_NONE};
}

xcb_window_t WindowQueries::parentOf(xcb_window_t window) const {
    const XcbPtr<xcb_query_tree_reply_t> reply(
        xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, window), nullptr));
    return reply ? reply->parent : xcb_window_t{XCB_WINDOW_NONE};
}

xcb_window_t WindowQueries::windowWithFocus(Clients clients) {
    xcb_window_t window = focusWindow();
    xcb_window_t topmost = XCB_WINDOW_NONE;
    for (int depth = 0; depth < kDeepestNesting; ++depth) {
        if (window == XCB_WINDOW_NONE || window == m_root) {
            break;
        }
        if (!property(window, "WM_STATE").bytes.isEmpty()) {
            return window;
        }
        topmost = window;
        window = parentOf(window);
    }
    return clients == Clients::TopLevel ? topmost : xcb_window_t{XCB_WINDOW_NONE};
}

std::optional<QRect> WindowQueries::frame(xcb_window_t window) const {
    const auto sizeCookie = xcb_get_geometry(m_connection, window);
    const auto placeCookie = xcb_translate_coordinates(m_connection, window, m_root, 0, 0);
    const XcbPtr<xcb_get_geometry_reply_t> size(
        xcb_get_geometry_reply(m_connection, sizeCookie, nullptr));
    const XcbPtr<xcb_translate_coordinates_reply_t> place(
        xcb_translate_coordinates_reply(m_connection, placeCookie, nullptr));
    if (!size || !place) {
        return std::nullopt;
    }
    return QRect(place->dst_x, place->dst_y, size->width, size->height);
}

bool WindowQueries::hasFocus(xcb_window_t window) {
    xcb_window_t focused = focusWindow();
    for (int depth = 0; depth < kDeepestNesting && focused != XCB_WINDOW_NONE; ++depth) {
        if (focused == window) {
            return true;
        }
        focused = parentOf(focused);
    }
    return false;
}

}  // namespace quillo::x11

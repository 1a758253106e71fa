// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <optional>

#include "platform/application_index.h"
#include "platform/x11/xcb_support.h"

namespace quillo::x11 {

/// Questions about other programs' windows, after ICCCM and the Extended Window Manager Hints
/// (EWMH). For one thread at a time. A window may vanish at any moment; then the answer is absent.
class WindowQueries final {
public:
    explicit WindowQueries(const Connection& connection);

    /// Whether a window manager that knows EWMH runs at present.
    [[nodiscard]] bool hasWindowManager();

    /// The window that the window manager calls active, else the one that holds the focus; 0 for
    /// none.
    [[nodiscard]] xcb_window_t activeWindow();

    /// None when the window does not exist.
    [[nodiscard]] std::optional<ProgramTraces> traces(xcb_window_t window);

    /// The managed windows, topmost first, without panels, desktops and minimised ones.
    [[nodiscard]] QList<xcb_window_t> windowsFromTop();

    /// Where the window lies on the screen, without its frame; none when it does not exist.
    [[nodiscard]] std::optional<QRect> frame(xcb_window_t window) const;

    /// Whether the window or one inside it has the keyboard focus.
    [[nodiscard]] bool hasFocus(xcb_window_t window);

    [[nodiscard]] AtomTable& atoms() { return m_atoms; }

private:
    struct Property {
        bool windowExists = false;
        QByteArray bytes;
        [[nodiscard]] QList<quint32> numbers() const;
    };

    /// What counts as a program's window: one that carries the window manager's mark (a window
    /// manager keeps windows of its own that take the focus), or without one any top-level window.
    enum class Clients { Managed, TopLevel };

    [[nodiscard]] xcb_get_property_cookie_t ask(xcb_window_t window, const QByteArray& name);
    [[nodiscard]] Property answer(xcb_get_property_cookie_t cookie) const;
    [[nodiscard]] Property property(xcb_window_t window, const QByteArray& name);
    [[nodiscard]] xcb_window_t focusWindow() const;
    [[nodiscard]] xcb_window_t parentOf(xcb_window_t window) const;
    [[nodiscard]] xcb_window_t windowWithFocus(Clients clients);
    [[nodiscard]] bool isOrdinary(xcb_window_t window);

    xcb_connection_t* m_connection;
    xcb_window_t m_root;
    AtomTable m_atoms;
};

}  // namespace quillo::x11

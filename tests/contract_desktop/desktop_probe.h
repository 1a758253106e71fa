// SPDX-License-Identifier: MIT
#pragma once

#include <xkbcommon/xkbcommon.h>

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include "platform/x11/xcb_support.h"

namespace quillo::testing {

/// Keycodes of the server, by position.
inline constexpr xcb_keycode_t kShiftKey = 50;
inline constexpr xcb_keycode_t kControlKey = 37;
inline constexpr xcb_keycode_t kSuperKey = 133;
inline constexpr xcb_keycode_t kAltKey = 64;
inline constexpr xcb_keycode_t kCapsLockKey = 66;
inline constexpr xcb_keycode_t kNumLockKey = 77;
inline constexpr xcb_keycode_t kVKey = 55;

/// Somebody at the keyboard, on a connection of his own. Lifts what he still holds at the end.
class Typist final {
public:
    Typist();
    ~Typist();

    void press(xcb_keycode_t key);
    void release(xcb_keycode_t key);
    /// Presses all in order and releases them in the opposite order.
    void tap(const QList<xcb_keycode_t>& keys);

    [[nodiscard]] QList<xcb_keycode_t> keysDown() const;
    /// The bits of the locked modifiers.
    [[nodiscard]] uint8_t lockedModifiers() const;
    /// Makes the layout with that number the one in use.
    void useLayout(uint8_t number);
    void clearLocks();

    /// The symbol that the key gives without modifiers in the first layout.
    [[nodiscard]] xkb_keysym_t symbolOf(xcb_keycode_t key) const;

    [[nodiscard]] xcb_connection_t* connection() const { return m_connection.get(); }
    [[nodiscard]] xcb_window_t root() const { return m_connection.root(); }

private:
    void fake(xcb_keycode_t key, uint8_t type);

    x11::Connection m_connection;
};

/// A window that has the keyboard focus and notes the keys that come to it.
class KeyWindow final {
public:
    struct Press {
        xkb_keysym_t symbol = 0;  ///< As a program finds it: key and layout, without modifiers.
        uint16_t modifiers = 0;   ///< Without Num Lock and the layout.
    };

    KeyWindow();

    /// The presses that came, without those of modifiers. Call it until it says what is awaited.
    [[nodiscard]] const QList<Press>& presses();
    [[nodiscard]] bool hasFocus() const;
    [[nodiscard]] xcb_window_t id() const { return m_window; }

private:
    [[nodiscard]] xkb_keysym_t symbolOf(const xcb_key_press_event_t& event) const;

    x11::Connection m_connection;
    xcb_window_t m_window;
    QList<Press> m_presses;
};

/// An xterm, which a window manager has given the focus as it does to each new window.
class Terminal final {
public:
    explicit Terminal(const QString& windowClass);
    ~Terminal();

    /// 0 when it did not come up.
    [[nodiscard]] xcb_window_t id() const { return m_window; }
    [[nodiscard]] qint64 processId() const { return m_process.processId(); }
    void quit();

private:
    QTemporaryDir m_folder;
    QProcess m_process;
    xcb_window_t m_window = 0;
};

/// Runs setxkbmap with these arguments and waits for its end; true when it worked.
[[nodiscard]] bool setKeyboardMap(const QStringList& arguments);

}  // namespace quillo::testing

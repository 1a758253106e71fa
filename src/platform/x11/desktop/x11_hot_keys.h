// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QObject>
#include <QSocketNotifier>
#include <memory>

#include "platform/hot_keys.h"
#include "platform/x11/desktop/modifier_keys.h"

namespace quillo::x11 {

/// Shortcuts by passive grabs on the root window, read on a connection of its own by the event
/// loop of the thread that made the object. The X server sends nothing while no shortcut is
/// pressed and the keyboard stays as it is.
class X11HotKeys final : public QObject, public HotKeys {
public:
    [[nodiscard]] static Result<std::unique_ptr<X11HotKeys>> create(
        const QByteArray& displayName = {});

    /// Busy also when this program has registered the chord already.
    [[nodiscard]] Result<std::unique_ptr<HotKeyRegistration>> registerHotKey(
        HotKeyChord chord, std::function<void()> pressed) override;
    void setSuspended(bool suspended) override;
    [[nodiscard]] quint32 lastPressTime() const override { return m_lastPressTime; }

private:
    class Registration;

    struct HotKey {
        HotKeyChord chord;
        xcb_keycode_t key = 0;
        uint16_t modifiers = 0;
        std::function<void()> pressed;
    };

    /// A key that was pressed and whose release has not been seen.
    struct HeldKey {
        xcb_timestamp_t lastPress = 0;
        bool releaseMayBeMissed = false;
    };

    X11HotKeys(Connection connection, ModifierKeys modifiers);

    void watchKeyboard();
    [[nodiscard]] Result<HotKey> resolve(HotKeyChord chord) const;
    [[nodiscard]] Result<void> grab(const HotKey& hotKey);
    void ungrab(const HotKey& hotKey, const QList<uint16_t>& lockCombinations);
    void ungrabAll();
    void grabAll();
    void waitForServer();
    void unregister(quint64 id);
    void readEvents();
    void readEventsSoon();
    void handle(const xcb_generic_event_t& event);
    void handlePress(const xcb_key_press_event_t& event);
    [[nodiscard]] bool isRepeat(const xcb_key_press_event_t& event) const;
    void keyboardChanged();
    void forgetReleasedKeys();

    Connection m_connection;
    ModifierKeys m_modifiers;
    uint8_t m_firstXkbEvent = 0;
    QSocketNotifier m_notifier;
    QHash<quint64, HotKey> m_hotKeys;
    quint64 m_nextId = 1;
    QHash<xcb_keycode_t, HeldKey> m_held;
    bool m_isSuspended = false;
    bool m_keyboardChanged = false;
    quint32 m_lastPressTime = 0;
};

}  // namespace quillo::x11

// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QTimer>
#include <memory>

#include "platform/key_event_poster.h"
#include "platform/x11/desktop/keyboard_layout.h"
#include "platform/x11/desktop/modifier_keys.h"

namespace quillo::x11 {

struct KeyStep {
    xcb_keycode_t key = 0;
    bool isPress = false;

    friend bool operator==(const KeyStep&, const KeyStep&) = default;
};

/// The keys of one paste.
struct PasteChord {
    QList<xcb_keycode_t> modifiers;
    xcb_keycode_t key = 0;
};

/// The order of events for a chord while some modifier keys are held: those are let go, the
/// chord is pressed and released, and they are pressed again. The chord's key itself is let go
/// when it is down.
[[nodiscard]] QList<KeyStep> stepsForChord(const PasteChord& chord,
                                           const QList<xcb_keycode_t>& heldModifiers,
                                           bool isKeyDown);

/// Posts keys by the XTEST extension on a connection of its own. For the thread that made it,
/// which should run an event loop.
class X11KeyEventPoster final : public KeyEventPoster {
public:
    /// Unsupported where the server lacks XTEST or XKB.
    [[nodiscard]] static Result<std::unique_ptr<X11KeyEventPoster>> create(
        const QByteArray& displayName = {});
    ~X11KeyEventPoster() override;

    [[nodiscard]] Result<void> postPaste(PasteKeys keys) override;

private:
    X11KeyEventPoster(Connection connection, KeyboardLayout layout);

    [[nodiscard]] Result<xcb_keycode_t> keyFor(xkb_keysym_t symbol);
    [[nodiscard]] Result<xcb_keycode_t> lendKey(xkb_keysym_t symbol);
    void returnLentKeys();
    void mapKey(xcb_keycode_t key, xkb_keysym_t symbol);
    void setLockedModifiers(uint8_t affected, uint8_t locked);
    [[nodiscard]] Result<void> post(const PasteChord& chord, const ModifierKeys& modifiers);

    Connection m_connection;
    KeyboardLayout m_layout;
    QHash<xkb_keysym_t, xcb_keycode_t> m_lentKeys;
    QTimer m_returnTimer;
};

}  // namespace quillo::x11

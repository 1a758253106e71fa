// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <array>

#include "platform/x11/xcb_support.h"

namespace quillo::x11 {

/// Which keys are modifiers, and which modifier bit stands for what, as the server's modifier map
/// has it at one moment.
struct ModifierKeys {
    uint16_t alt = 0;  ///< Bits of a key event's state; 0 where no key has it.
    uint16_t super = 0;
    uint16_t numLock = 0;
    uint16_t scrollLock = 0;
    std::array<QList<xcb_keycode_t>, 8> keys;  ///< By modifier: Shift, Lock, Control, Mod1 to Mod5.

    friend bool operator==(const ModifierKeys&, const ModifierKeys&) = default;

    /// The bits that say nothing of a held key: Caps, Num and Scroll Lock.
    [[nodiscard]] uint16_t lockBits() const;

    /// The bits of the modifiers that somebody holds down to type a shortcut.
    [[nodiscard]] uint16_t heldBits() const;

    /// Every union of some of the lock bits, the empty one among them.
    [[nodiscard]] QList<uint16_t> lockCombinations() const;

    /// The keys of all held modifiers, without the lock keys.
    [[nodiscard]] QList<xcb_keycode_t> heldModifierKeys() const;

    /// A key of that modifier (its index in keys), or the fallback where it has none.
    [[nodiscard]] xcb_keycode_t keyOf(size_t modifier, xcb_keycode_t fallback) const;
};

/// Two round trips.
[[nodiscard]] Result<ModifierKeys> readModifierKeys(xcb_connection_t* connection);

}  // namespace quillo::x11

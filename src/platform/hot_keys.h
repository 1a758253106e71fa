// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <functional>
#include <memory>

#include "base/result.h"

namespace quillo {

/// A shortcut as the settings keep it: a virtual key code (a position on the keyboard, 9 is the
/// V key of a US board) and a modifier mask.
struct HotKeyChord {
    quint32 keyCode = 0;
    quint32 modifiers = 0;

    friend bool operator==(const HotKeyChord&, const HotKeyChord&) = default;
};

/// The bits of HotKeyChord::modifiers. Command is the Super key, Option is Alt.
inline constexpr quint32 kCommandModifier = 256;
inline constexpr quint32 kShiftModifier = 512;
inline constexpr quint32 kOptionModifier = 2048;
inline constexpr quint32 kControlModifier = 4096;

/// A registered shortcut; destroying it gives the shortcut back.
class HotKeyRegistration {
public:
    virtual ~HotKeyRegistration() = default;
};

/// System-wide shortcuts. Main thread only.
class HotKeys {
public:
    virtual ~HotKeys() = default;

    /// Registers a shortcut whatever lock keys (Caps, Num) are on. pressed runs on the main
    /// thread once for each press; the repeats of a held key are one press. Busy when another
    /// program owns the combination, Unsupported when the key code has no key here.
    [[nodiscard]] virtual Result<std::unique_ptr<HotKeyRegistration>> registerHotKey(
        HotKeyChord chord, std::function<void()> pressed) = 0;

    /// Lifts (true) or restores (false) the grabs of every registration, so that synthetic keys
    /// do not fire our own shortcut.
    virtual void setSuspended(bool suspended) = 0;

    /// The display server's time of the newest press, for focus requests; 0 before the first.
    [[nodiscard]] virtual quint32 lastPressTime() const = 0;
};

/// The evdev key code (linux/input-event-codes.h) at the position of a virtual key code; 0 when
/// there is none.
[[nodiscard]] quint32 evdevFromVirtualKeyCode(quint32 keyCode);

/// The other way round; none (a value above 255) when the key has no virtual code.
[[nodiscard]] quint32 virtualKeyCodeFromEvdev(quint32 evdevCode);
inline constexpr quint32 kNoVirtualKeyCode = 0xffffffff;

}  // namespace quillo

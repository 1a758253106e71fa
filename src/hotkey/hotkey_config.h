// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <optional>

#include "platform/hot_keys.h"
#include "platform/user_defaults.h"

namespace quillo {

/// The configured shortcut: a virtual key code (a position on the keyboard) and a mask of the
/// modifiers of HotKeyChord. The default is Shift-Command-V.
struct HotkeyConfig {
    quint32 keyCode = 9;
    quint32 modifiers = kCommandModifier | kShiftModifier;

    friend bool operator==(const HotkeyConfig&, const HotkeyConfig&) = default;
};

/// The modifiers' signs and the key's name, "⇧⌘V"; a key without a name shows as "?".
[[nodiscard]] QString displayString(const HotkeyConfig& config);
/// The same in words, "Shift-Super-V".
[[nodiscard]] QString spokenString(const HotkeyConfig& config);

/// The name of the system's own shortcut that has this combination, with Command or, as Linux
/// programs have it, with Control in its place; none when it is free to take.
[[nodiscard]] std::optional<QString> systemShortcutName(const HotkeyConfig& config);

/// The stored shortcut. Values that are absent, of the wrong type or outside 32 bits unsigned
/// give the default; a missing modifier mask beside a stored key code reads as 0.
[[nodiscard]] HotkeyConfig loadHotkeyConfig(const UserDefaults& defaults);
void storeHotkeyConfig(UserDefaults& defaults, const HotkeyConfig& config);

}  // namespace quillo

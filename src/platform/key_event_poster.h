// SPDX-License-Identifier: MIT
#pragma once

#include "base/result.h"

namespace quillo {

/// The key combination by which a program pastes.
enum class PasteKeys {
    ControlV,
    ControlShiftV,  ///< Most terminals.
    ShiftInsert,    ///< xterm and its kin, from PRIMARY.
};

/// Posts synthetic key events, as if typed on the keyboard.
class KeyEventPoster {
public:
    virtual ~KeyEventPoster() = default;

    /// Presses and releases the combination. Modifiers that the person still holds are lifted
    /// first and pressed again afterwards. The letter is found on the current layout. Returns
    /// when the server has taken the events, within a few milliseconds; Unsupported where the
    /// display server offers no way to do it.
    [[nodiscard]] virtual Result<void> postPaste(PasteKeys keys) = 0;
};

}  // namespace quillo

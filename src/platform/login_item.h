// SPDX-License-Identifier: MIT
#pragma once

#include "base/result.h"

namespace quillo {

/// Whether the desktop starts the program when the person logs in. What counts is what the desktop
/// would do, not what was asked for last. Main thread; a call takes as long as a small file does.
class LoginItem {
public:
    virtual ~LoginItem() = default;

    [[nodiscard]] virtual bool isRegistered() const = 0;
    /// Has the running program started at login. Registered already, it is corrected to that.
    [[nodiscard]] virtual Result<void> registerItem() = 0;
    /// The error's text is for the person.
    [[nodiscard]] virtual Result<void> unregisterItem() = 0;
};

}  // namespace quillo

// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include "platform/key_event_poster.h"
#include "platform/workspace.h"

namespace quillo {

/// The keys that paste in a program: Shift-Insert for xterm and its kin, Control-Shift-V for the
/// other terminals (by their desktop entry's category or their window class), Control-V
/// everywhere else.
[[nodiscard]] PasteKeys pasteKeysFor(const RunningApplication& application,
                                     const QStringList& categories);

}  // namespace quillo

// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace quillo {

/// True for a text that must never enter the history: a one-time code of six digits, an
/// authenticator's set-up link, or text that carries a credential. Thread-safe; one pass over
/// the text.
[[nodiscard]] bool isSensitive(const QString& text);

}  // namespace quillo

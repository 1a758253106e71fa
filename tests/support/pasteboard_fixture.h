// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "support/fake_pasteboard.h"

namespace quillo::testing {

/// The clipboard of a real program as it was recorded under tests/data/clipboard: its targets in
/// order, with their replies or as refused. Empty when there is no such case.
[[nodiscard]] QList<CopiedTarget> recordedClipboard(const QString& name);

/// The names of all recorded cases.
[[nodiscard]] QStringList recordedClipboardNames();

}  // namespace quillo::testing

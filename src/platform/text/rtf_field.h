// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace quillo {

/// The target of a HYPERLINK field instruction, such as `HYPERLINK "https://example.com/"` or
/// `HYPERLINK \l "chapter"` (which gives "#chapter"); empty for every other field.
[[nodiscard]] QString hyperlinkTarget(const QString& instruction);

}  // namespace quillo

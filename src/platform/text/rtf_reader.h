// SPDX-License-Identifier: MIT
#pragma once

#include "platform/rich_text.h"

namespace quillo {

/// See RichTextReader::readRtf.
[[nodiscard]] Result<StyledText> styledTextFromRtf(const QByteArray& document);

}  // namespace quillo

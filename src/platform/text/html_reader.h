// SPDX-License-Identifier: MIT
#pragma once

#include "platform/rich_text.h"

namespace quillo {

/// See RichTextReader::readHtml.
[[nodiscard]] Result<StyledText> styledTextFromHtml(const QByteArray& document);

}  // namespace quillo

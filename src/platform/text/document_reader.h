// SPDX-License-Identifier: MIT
#pragma once

#include "platform/rich_text.h"

namespace quillo {

/// Reads the rich documents that programs put on the clipboard. RTF is interpreted here; HTML is
/// flattened to one bounded inline flow whose styles QTextDocument resolves. Text beyond
/// 4 Mi UTF-16 units is cut off. Stateless, so one object serves every thread; a
/// QGuiApplication must exist.
class DocumentReader final : public RichTextReader {
public:
    [[nodiscard]] Result<StyledText> readRtf(const QByteArray& document) const override;
    [[nodiscard]] Result<StyledText> readHtml(const QByteArray& document) const override;
};

}  // namespace quillo

// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

#include "platform/rich_text.h"

namespace quillo {

/// The most text that a document may give; what follows is cut off.
inline constexpr qsizetype kMaxDocumentUnits = 4 * 1024 * 1024;

/// Collects text with styles; neighbours of one style become one run.
class StyledTextBuilder final {
public:
    void append(QStringView text, const TextStyle& style);

    /// Line feed in the style of what stands before it.
    void appendLineFeed();

    /// Takes away one line feed at the end, if there is one.
    void dropFinalLineFeed();

    [[nodiscard]] bool isFull() const { return m_result.text.size() >= kMaxDocumentUnits; }
    [[nodiscard]] StyledText take();

private:
    StyledText m_result;
};

/// Replaces halves of surrogate pairs that stand alone by U+FFFD; the length stays.
void mendSurrogates(QString& text);

}  // namespace quillo

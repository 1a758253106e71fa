// SPDX-License-Identifier: MIT
#pragma once

#include "platform/text/styled_text_builder.h"

namespace quillo {

/// Turns what an RTF document says in order into text: paragraphs into lines, rows into lines
/// whose cells have tabs between them.
class RtfOutput final {
public:
    /// Control characters other than tab and line end are dropped.
    void append(QStringView text, const TextStyle& style);

    void endParagraph();
    void endSection();
    void endCell();
    void endRow();

    /// Ends a row of a table that stands in a cell; the last such row adds no line.
    void endNestedRow();

    [[nodiscard]] bool isFull() const { return m_builder.isFull(); }
    /// The end of the last paragraph or row is no line break: nothing comes after it, and a
    /// terminal would take it for a Return.
    [[nodiscard]] StyledText take();

private:
    void flushPending();
    void emitLineFeed();

    StyledTextBuilder m_builder;
    int m_pendingTabs = 0;
    bool m_pendingLineFeed = false;
    bool m_atLineStart = true;
};

}  // namespace quillo

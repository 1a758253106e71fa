// SPDX-License-Identifier: MIT
#include "platform/text/rtf_output.h"

#include <algorithm>

namespace quillo {
namespace {

bool isDropped(QChar unit) {
    return (unit.unicode() < 0x20 && unit != u'\t') || unit == QChar(0x7F);
}

}  // namespace

void RtfOutput::append(QStringView text, const TextStyle& style) {
    qsizetype start = 0;
    for (qsizetype i = 0; i <= text.size(); ++i) {
        const bool ends = i == text.size();
        if (!ends && !isDropped(text[i])) {
            continue;
        }
        if (i > start) {
            flushPending();
            m_builder.append(text.sliced(start, i - start), style);
            m_atLineStart = false;
        }
        start = i + 1;
        if (!ends && (text[i] == u'\r' || (text[i] == u'\n' && (i == 0 || text[i - 1] != u'\r')))) {
            endParagraph();
        }
    }
}

void RtfOutput::endParagraph() {
    flushPending();
    emitLineFeed();
}

void RtfOutput::endSection() {
    if (!m_atLineStart) {
        endParagraph();
    }
}

void RtfOutput::endCell() {
    m_pendingLineFeed = false;
    ++m_pendingTabs;
}

void RtfOutput::endRow() {
    m_pendingLineFeed = false;
    m_pendingTabs = std::max(0, m_pendingTabs - 1);
    flushPending();
    emitLineFeed();
}

void RtfOutput::endNestedRow() {
    m_pendingTabs = std::max(0, m_pendingTabs - 1);
    flushPending();
    m_pendingLineFeed = true;
}

StyledText RtfOutput::take() {
    m_builder.dropFinalLineFeed();
    return m_builder.take();
}

void RtfOutput::flushPending() {
    if (m_pendingLineFeed) {
        m_pendingLineFeed = false;
        emitLineFeed();
    }
    for (; m_pendingTabs > 0 && !m_builder.isFull(); --m_pendingTabs) {
        m_builder.append(u"\t", {});
        m_atLineStart = false;
    }
    m_pendingTabs = 0;
}

void RtfOutput::emitLineFeed() {
    m_builder.appendLineFeed();
    m_atLineStart = true;
}

}  // namespace quillo

// SPDX-License-Identifier: MIT
#include "platform/text/styled_text_builder.h"

#include <algorithm>
#include <utility>

namespace quillo {

void StyledTextBuilder::append(QStringView text, const TextStyle& style) {
    const qsizetype room = kMaxDocumentUnits - m_result.text.size();
    const QStringView part = text.first(std::min(room, text.size()));
    if (part.isEmpty()) {
        return;
    }
    if (!m_result.runs.isEmpty() && m_result.runs.last().style == style) {
        m_result.runs.last().length += part.size();
    } else {
        m_result.runs.append({m_result.text.size(), part.size(), style});
    }
    m_result.text.append(part);
}

void StyledTextBuilder::appendLineFeed() {
    const TextStyle style = m_result.runs.isEmpty() ? TextStyle{} : m_result.runs.last().style;
    append(u"\n", style);
}

void StyledTextBuilder::dropFinalLineFeed() {
    if (!m_result.text.endsWith(u'\n')) {
        return;
    }
    m_result.text.chop(1);
    StyledRun& last = m_result.runs.last();
    if (--last.length == 0) {
        m_result.runs.removeLast();
    }
}

StyledText StyledTextBuilder::take() {
    mendSurrogates(m_result.text);
    return std::exchange(m_result, {});
}

void mendSurrogates(QString& text) {
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar unit = std::as_const(text).at(i);
        if (!unit.isSurrogate()) {
            continue;
        }
        if (unit.isHighSurrogate() && i + 1 < text.size() &&
            std::as_const(text).at(i + 1).isLowSurrogate()) {
            ++i;
        } else {
            text[i] = QChar::ReplacementCharacter;
        }
    }
}

}  // namespace quillo

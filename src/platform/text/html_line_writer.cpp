// SPDX-License-Identifier: MIT
#include "platform/text/html_line_writer.h"

#include <algorithm>
#include <utility>

#include "platform/text/styled_text_builder.h"

namespace quillo {
namespace {

bool isCollapsible(QChar c) {
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r' || c == u'\f';
}

// Characters that Qt's documents use for their own structure, and controls.
bool isForeign(QChar c) {
    const char16_t unit = c.unicode();
    return unit < 0x20 || unit == 0x7F || (unit >= 0xFDD0 && unit <= 0xFDEF) || unit >= 0xFFFE ||
           unit == 0xFFFC;
}

}  // namespace

bool HtmlLineWriter::isFull() const {
    return m_units >= kMaxDocumentUnits;
}

void HtmlLineWriter::addText(QStringView text, bool preserveSpace) {
    preserveSpace ? addPreserved(text) : addCollapsed(text);
}

void HtmlLineWriter::addCollapsed(QStringView text) {
    for (qsizetype i = 0; i < text.size() && !isFull();) {
        if (isCollapsible(text[i])) {
            if (!m_space) {
                m_space = true;
                m_spacePosition = m_flow.size();
            }
            ++i;
            continue;
        }
        const auto* const end = std::find_if(text.begin() + i, text.end(), isCollapsible);
        const qsizetype length = end - text.begin() - i;
        addRun(text.sliced(i, length));
        i += length;
    }
}

void HtmlLineWriter::addPreserved(QStringView text) {
    const auto isSpecial = [](QChar c) { return c == u'\n' || c == u'\r' || c == u'\t'; };
    for (qsizetype i = 0; i < text.size() && !isFull();) {
        if (text[i] == u'\n') {
            m_ignoreLineFeed ? void(m_ignoreLineFeed = false) : lineBreak();
            ++i;
            continue;
        }
        if (text[i] == u'\r') {
            ++i;
            continue;
        }
        if (text[i] == u'\t') {
            flushPending();
            m_flow.append(u'\t');
            m_textEnd = m_flow.size();
            ++i;
            continue;
        }
        const auto* const end = std::find_if(text.begin() + i, text.end(), isSpecial);
        const qsizetype length = end - text.begin() - i;
        addRun(text.sliced(i, length));
        i += length;
    }
}

void HtmlLineWriter::addRun(QStringView run) {
    flushPending();
    for (const QChar c : run) {
        if (c == u'<') {
            m_flow.append(u"&lt;");
        } else if (c == u'>') {
            m_flow.append(u"&gt;");
        } else if (!isForeign(c)) {
            m_flow.append(c);
        }
    }
    m_units += run.size();
    m_textEnd = m_flow.size();
}

void HtmlLineWriter::flushPending() {
    const bool atCellStart = std::exchange(m_inEmptyCell, false);
    m_ignoreLineFeed = false;
    // From the back to the front, so that the places stay right.
    if (!m_mark.isEmpty()) {
        m_flow.insert(std::max(m_markPosition, m_textEnd), m_mark);
        m_mark.clear();
    } else if (m_space && m_lineHasText && m_breaks == 0 && !atCellStart) {
        m_flow.insert(std::max(m_spacePosition, m_textEnd), u' ');
    }
    if (m_breaks > 0 && m_lineHasText) {
        m_flow.insert(m_textEnd, QString(m_breaks, QChar(kLineBreak)));
        m_units += m_breaks;
    }
    m_breaks = 0;
    m_space = false;
    m_lineHasText = true;
}

void HtmlLineWriter::blockBoundary() {
    m_space = false;
    if (!m_inEmptyCell && m_lineHasText && m_breaks == 0) {
        m_breaks = 1;
    }
}

void HtmlLineWriter::lineBreak() {
    m_space = false;
    m_ignoreLineFeed = false;
    if (!m_inEmptyCell) {
        m_breaks = static_cast<int>(std::min<qsizetype>(m_breaks + 1, kMaxDocumentUnits));
    }
}

void HtmlLineWriter::listMark(const QString& mark) {
    blockBoundary();
    m_mark = mark;
    m_markPosition = m_flow.size();
}

bool HtmlLineWriter::beginCell(bool isFirstOfRow) {
    const bool outerCellWasEmpty = m_inEmptyCell;
    m_space = false;
    if (!isFirstOfRow) {
        flushPending();
        m_flow.append(u'\t');
        m_textEnd = m_flow.size();
        ++m_units;
    }
    m_inEmptyCell = true;
    return outerCellWasEmpty;
}

void HtmlLineWriter::endCell(bool outerCellWasEmpty) {
    m_space = false;
    if (!m_inEmptyCell) {
        m_breaks = 0;
    }
    m_inEmptyCell = m_inEmptyCell && outerCellWasEmpty;
}

}  // namespace quillo

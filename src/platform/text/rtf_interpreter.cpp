// SPDX-License-Identifier: MIT
#include "platform/text/rtf_interpreter.h"

#include <algorithm>

namespace quillo {
namespace {

constexpr std::size_t kMaxGroups = 1024;
constexpr qsizetype kMaxInstructionUnits = 8192;

}  // namespace

StyledText RtfInterpreter::run() {
    while (!m_output.isFull() && handle(m_tokens.next())) {
    }
    flushBytes();
    return m_output.take();
}

bool RtfInterpreter::handle(const RtfToken& token) {
    switch (token.kind) {
        case RtfTokenKind::End:
            return false;
        case RtfTokenKind::GroupStart:
            openGroup();
            return true;
        case RtfTokenKind::GroupEnd:
            closeGroup();
            return m_groups.size() > 1;
        case RtfTokenKind::Word:
            handleWord(token);
            return true;
        case RtfTokenKind::Symbol:
            handleSymbol(static_cast<char>(token.byte));
            return true;
        case RtfTokenKind::Hex: {
            const char byte = static_cast<char>(token.byte);
            appendBytes(QByteArrayView(&byte, 1));
            return true;
        }
        case RtfTokenKind::Text:
            appendBytes(token.text);
            return true;
    }
    return false;
}

void RtfInterpreter::openGroup() {
    flushBytes();
    m_skip = 0;
    if (m_groups.size() > kMaxGroups) {
        ++m_groupsTooDeep;
        return;
    }
    Group inner = group();
    inner.starred = false;
    inner.ownsField = false;
    m_groups.push_back(inner);
}

void RtfInterpreter::closeGroup() {
    flushBytes();
    m_skip = 0;
    if (m_groupsTooDeep > 0) {
        --m_groupsTooDeep;
        return;
    }
    if (group().ownsField) {
        m_fields.pop_back();
    }
    if (group().destination == Destination::FontTable) {
        m_fonts.finish(m_decoder);
    }
    if (m_groups.size() > 1) {
        m_groups.pop_back();
    }
}

void RtfInterpreter::handleWord(const RtfToken& token) {
    const RtfKeyword keyword = rtfKeyword(token.text);
    if (m_skip > 0 && keyword.action == RtfAction::Character) {
        --m_skip;
        return;
    }
    flushBytes();
    m_skip = 0;
    if (group().starred && keyword.action == RtfAction::None) {
        group().destination = Destination::Skipped;
    }
    group().starred = false;
    if (group().destination == Destination::Skipped) {
        return;
    }
    switch (keyword.action) {
        case RtfAction::None:
            break;
        case RtfAction::SkipGroup:
        case RtfAction::KeepGroup:
        case RtfAction::FontTable:
        case RtfAction::ColorTable:
        case RtfAction::UnicodePair:
        case RtfAction::UnicodeHalf:
        case RtfAction::Field:
        case RtfAction::FieldInstruction:
        case RtfAction::FieldResult:
            handleDestination(keyword);
            break;
        case RtfAction::Character:
        case RtfAction::Paragraph:
        case RtfAction::Section:
        case RtfAction::Cell:
        case RtfAction::Row:
        case RtfAction::NestedRow:
            handleStructure(keyword);
            break;
        case RtfAction::Unicode:
        case RtfAction::UnicodeSkip:
        case RtfAction::CodePage:
        case RtfAction::DocumentCharset:
            handleEncoding(keyword, token);
            break;
        case RtfAction::DefaultFont:
        case RtfAction::Font:
        case RtfAction::FontCharset:
        case RtfAction::Red:
        case RtfAction::Green:
        case RtfAction::Blue:
            handleTables(keyword, token);
            break;
        default:
            handleFormat(keyword, token);
    }
}

void RtfInterpreter::handleSymbol(char symbol) {
    if (symbol == '*') {
        group().starred = true;
        return;
    }
    if (symbol == '\\' || symbol == '{' || symbol == '}') {
        appendBytes(QByteArrayView(&symbol, 1));
        return;
    }
    if (m_skip > 0) {
        --m_skip;
        return;
    }
    flushBytes();
    switch (symbol) {
        case '~':
            appendText(u"\u00A0");
            break;
        case '_':
            appendText(u"\u2011");
            break;
        case '\t':
            appendText(u"\t");
            break;
        case '\r':
        case '\n':
            appendText(u"\n");
            break;
        default:
            break;
    }
}

void RtfInterpreter::appendBytes(QByteArrayView bytes) {
    const qsizetype skipped = std::min<qsizetype>(m_skip, bytes.size());
    m_skip -= static_cast<int>(skipped);
    bytes = bytes.sliced(skipped);
    switch (group().destination) {
        case Destination::Text:
        case Destination::FieldInstruction:
            m_bytes.append(bytes);
            break;
        case Destination::FontTable:
            m_fonts.append(bytes, m_decoder);
            break;
        case Destination::ColorTable:
            m_colors.append(bytes);
            break;
        case Destination::Skipped:
        case Destination::UnicodePair:
            break;
    }
}

void RtfInterpreter::appendText(QStringView text) {
    switch (group().destination) {
        case Destination::Text:
            if (!group().hidden) {
                m_output.append(text, style());
            }
            break;
        case Destination::FontTable:
            m_fonts.append(text);
            break;
        case Destination::FieldInstruction:
            if (!m_fields.empty() && m_fields.back().instruction.size() < kMaxInstructionUnits) {
                m_fields.back().instruction.append(text);
            }
            break;
        default:
            break;
    }
}

void RtfInterpreter::flushBytes() {
    if (!m_bytes.isEmpty()) {
        const QString text = m_decoder.decode(currentCodePage(), m_bytes);
        m_bytes.clear();
        appendText(text);
    }
}

int RtfInterpreter::currentCodePage() const {
    const int page = m_fonts.codePage(m_groups.back().format.font);
    return page != 0 ? page : m_codePage;
}

const TextStyle& RtfInterpreter::style() {
    const Format& format = group().format;
    if (format != m_styleFormat) {
        m_styleFormat = format;
        m_style = {.bold = format.bold,
                   .italic = format.italic,
                   .underline = format.underline,
                   .strikeOut = format.strikeOut,
                   .fontFamily = m_fonts.family(format.font),
                   .pointSize = format.halfPoints / 2.0,
                   .foreground = m_colors.color(format.foreground),
                   .background = m_colors.color(format.background),
                   .link = format.link < 0 ? QString() : m_links.at(format.link)};
    }
    return m_style;
}

}  // namespace quillo

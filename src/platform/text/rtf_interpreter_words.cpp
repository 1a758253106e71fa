// SPDX-License-Identifier: MIT
// What the single control words of RTF do; the flow of tokens is in rtf_interpreter.cpp.
#include <algorithm>

#include "platform/text/rtf_field.h"
#include "platform/text/rtf_interpreter.h"

namespace quillo {
namespace {

constexpr int kMaxUnicodeSkip = 16;
constexpr int kMaxHalfPoints = 2000;

bool isOn(const RtfToken& token) {
    return !token.hasNumber || token.number != 0;
}

}  // namespace

void RtfInterpreter::handleDestination(RtfKeyword keyword) {
    switch (keyword.action) {
        case RtfAction::FontTable:
            group().destination = Destination::FontTable;
            break;
        case RtfAction::ColorTable:
            group().destination = Destination::ColorTable;
            break;
        case RtfAction::UnicodePair:
            group().pairDestination = group().destination;
            group().destination = Destination::UnicodePair;
            break;
        case RtfAction::UnicodeHalf:
            if (group().destination == Destination::UnicodePair) {
                group().destination = group().pairDestination;
            }
            break;
        case RtfAction::Field:
            openField();
            break;
        case RtfAction::FieldInstruction:
            group().destination = Destination::FieldInstruction;
            break;
        case RtfAction::FieldResult:
            openFieldResult();
            break;
        case RtfAction::SkipGroup:
            group().destination = Destination::Skipped;
            break;
        default:
            break;
    }
}

void RtfInterpreter::openField() {
    if (!group().ownsField) {
        m_fields.push_back({.instruction = {}, .resultDestination = group().destination});
        group().ownsField = true;
    }
}

void RtfInterpreter::openFieldResult() {
    if (m_fields.empty()) {
        return;
    }
    Field& field = m_fields.back();
    group().destination =
        field.resultDestination == Destination::Text ? Destination::Text : Destination::Skipped;
    if (!field.link) {
        const QString target = hyperlinkTarget(field.instruction);
        field.link = target.isEmpty() ? group().format.link : static_cast<int>(m_links.size());
        if (!target.isEmpty()) {
            m_links.append(target);
        }
    }
    group().format.link = *field.link;
}

void RtfInterpreter::handleStructure(RtfKeyword keyword) {
    if (keyword.action == RtfAction::Character) {
        const char16_t unit = static_cast<char16_t>(keyword.value);
        appendText(QStringView(&unit, 1));
        return;
    }
    if (group().destination != Destination::Text) {
        return;
    }
    switch (keyword.action) {
        case RtfAction::Paragraph:
            m_output.endParagraph();
            break;
        case RtfAction::Section:
            m_output.endSection();
            break;
        case RtfAction::Cell:
            m_output.endCell();
            break;
        case RtfAction::Row:
            m_output.endRow();
            break;
        default:
            m_output.endNestedRow();
    }
}

void RtfInterpreter::handleEncoding(RtfKeyword keyword, const RtfToken& token) {
    if (keyword.action == RtfAction::DocumentCharset) {
        m_codePage = keyword.value;
        return;
    }
    if (!token.hasNumber) {
        return;
    }
    if (keyword.action == RtfAction::Unicode) {
        handleUnicode(token);
    } else if (keyword.action == RtfAction::UnicodeSkip) {
        group().unicodeSkip = std::clamp(token.number, 0, kMaxUnicodeSkip);
    } else if (group().destination == Destination::FontTable) {
        m_fonts.setCodePage(token.number);
    } else if (token.number > 0) {
        m_codePage = token.number;
    }
}

void RtfInterpreter::handleUnicode(const RtfToken& token) {
    const int code = token.number < 0 ? token.number + 0x10000 : token.number;
    m_skip = group().unicodeSkip;
    if (code <= 0 || code > 0x10FFFF) {
        return;
    }
    if (code >= 0xF020 && code <= 0xF0FF) {
        // Symbol fonts have their signs in the private area, at their byte.
        appendText(QStringView(QString(symbolFromByte(code - 0xF000))));
        return;
    }
    appendText(QChar::fromUcs4(static_cast<char32_t>(code)));
}

void RtfInterpreter::handleTables(RtfKeyword keyword, const RtfToken& token) {
    const bool inFonts = group().destination == Destination::FontTable;
    switch (keyword.action) {
        case RtfAction::DefaultFont:
            m_defaultFont = token.number;
            group().format.font = token.number;
            break;
        case RtfAction::Font:
            inFonts ? m_fonts.begin(token.number) : void(group().format.font = token.number);
            break;
        case RtfAction::FontCharset:
            m_fonts.setCodePage(codePageOfCharset(token.number));
            break;
        case RtfAction::Red:
            m_colors.setRed(token.number);
            break;
        case RtfAction::Green:
            m_colors.setGreen(token.number);
            break;
        default:
            m_colors.setBlue(token.number);
    }
}

void RtfInterpreter::handleFormat(RtfKeyword keyword, const RtfToken& token) {
    Format& format = group().format;
    switch (keyword.action) {
        case RtfAction::Plain:
            format = Format{.font = m_defaultFont, .link = format.link};
            group().hidden = false;
            break;
        case RtfAction::Bold:
            format.bold = isOn(token);
            break;
        case RtfAction::Italic:
            format.italic = isOn(token);
            break;
        case RtfAction::Underline:
            format.underline = isOn(token);
            break;
        case RtfAction::UnderlineOff:
            format.underline = false;
            break;
        case RtfAction::StrikeOut:
            format.strikeOut = isOn(token);
            break;
        case RtfAction::Hidden:
            group().hidden = isOn(token);
            break;
        case RtfAction::FontSize:
            format.halfPoints = std::clamp(token.number, 0, kMaxHalfPoints);
            break;
        case RtfAction::Foreground:
            format.foreground = token.number;
            break;
        case RtfAction::Background:
            format.background = token.number;
            break;
        default:
            break;
    }
}

}  // namespace quillo

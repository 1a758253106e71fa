// SPDX-License-Identifier: MIT
#include "platform/text/rtf_tokenizer.h"

#include <algorithm>

namespace quillo {
namespace {

constexpr int kMaxNumber = 1'000'000'000;

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isIgnored(char c) {
    return c == '\r' || c == '\n' || c == '\0';
}

bool endsText(char c) {
    return c == '\\' || c == '{' || c == '}' || isIgnored(c);
}

int hexDigit(char c) {
    if (isDigit(c)) {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

}  // namespace

RtfToken RtfTokenizer::next() {
    while (!atEnd()) {
        const char c = peek();
        if (isIgnored(c)) {
            ++m_position;
            continue;
        }
        if (c == '{' || c == '}') {
            ++m_position;
            return {.kind = c == '{' ? RtfTokenKind::GroupStart : RtfTokenKind::GroupEnd};
        }
        if (c != '\\') {
            return rawText();
        }
        ++m_position;
        if (!atEnd()) {
            return control();
        }
    }
    return {};
}

RtfToken RtfTokenizer::control() {
    const char c = peek();
    if (isLetter(c)) {
        return word();
    }
    ++m_position;
    if (c == '\'') {
        return hex();
    }
    return {.kind = RtfTokenKind::Symbol, .byte = static_cast<unsigned char>(c)};
}

RtfToken RtfTokenizer::word() {
    const qsizetype start = m_position;
    while (!atEnd() && isLetter(peek())) {
        ++m_position;
    }
    RtfToken token{.kind = RtfTokenKind::Word,
                   .text = m_document.sliced(start, m_position - start)};
    readNumber(token);
    if (peek() == ' ') {
        ++m_position;
    }
    if (token.text == QByteArrayView("bin")) {
        skipBytes(token);
    }
    return token;
}

void RtfTokenizer::readNumber(RtfToken& token) {
    const qsizetype start = m_position;
    const bool negative = peek() == '-';
    m_position += negative ? 1 : 0;
    if (!isDigit(peek())) {
        m_position = start;
        return;
    }
    qint64 value = 0;
    while (isDigit(peek())) {
        value = std::min<qint64>(value * 10 + (peek() - '0'), kMaxNumber);
        ++m_position;
    }
    token.hasNumber = true;
    token.number = static_cast<int>(negative ? -value : value);
}

void RtfTokenizer::skipBytes(const RtfToken& token) {
    const qsizetype count = std::max(0, token.number);
    m_position += std::min(count, m_document.size() - m_position);
}

RtfToken RtfTokenizer::hex() {
    int value = 0;
    for (int digits = 0; digits < 2; ++digits) {
        const int digit = hexDigit(peek());
        if (digit < 0) {
            return {.kind = RtfTokenKind::Symbol, .byte = '\''};
        }
        value = value * 16 + digit;
        ++m_position;
    }
    return {.kind = RtfTokenKind::Hex, .byte = value};
}

RtfToken RtfTokenizer::rawText() {
    const qsizetype start = m_position;
    while (!atEnd() && !endsText(peek())) {
        ++m_position;
    }
    return {.kind = RtfTokenKind::Text, .text = m_document.sliced(start, m_position - start)};
}

}  // namespace quillo

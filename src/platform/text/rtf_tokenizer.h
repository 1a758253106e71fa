// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>

namespace quillo {

enum class RtfTokenKind {
    End,
    GroupStart,
    GroupEnd,
    Word,    ///< A control word: its name, and its number if it has one.
    Symbol,  ///< A control symbol such as \~; `byte` is the character.
    Hex,     ///< \'hh; `byte` is its value.
    Text,    ///< Raw bytes of the document.
};

struct RtfToken {
    RtfTokenKind kind = RtfTokenKind::End;
    QByteArrayView text = {};  ///< Of a word its name, of a text its bytes.
    bool hasNumber = false;
    int number = 0;
    int byte = 0;
};

/// Cuts an RTF document into tokens, in one pass and without copying. Line ends between tokens,
/// NULs and the data of \bin are swallowed; what is no token is skipped.
class RtfTokenizer final {
public:
    /// The bytes must outlive the tokenizer and its tokens.
    explicit RtfTokenizer(QByteArrayView document) : m_document(document) {}

    [[nodiscard]] RtfToken next();

private:
    [[nodiscard]] bool atEnd() const { return m_position >= m_document.size(); }
    [[nodiscard]] char peek() const { return atEnd() ? '\0' : m_document[m_position]; }
    [[nodiscard]] RtfToken control();
    [[nodiscard]] RtfToken word();
    [[nodiscard]] RtfToken hex();
    [[nodiscard]] RtfToken rawText();
    void readNumber(RtfToken& token);
    void skipBytes(const RtfToken& token);

    QByteArrayView m_document;
    qsizetype m_position = 0;
};

}  // namespace quillo

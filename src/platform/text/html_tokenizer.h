// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringView>
#include <functional>

namespace quillo {

enum class HtmlTokenKind { End, Text, StartTag, EndTag, Comment };

struct HtmlToken {
    HtmlTokenKind kind = HtmlTokenKind::End;
    QStringView text = {};        ///< The text, the comment, or the name of the tag as written.
    QStringView attributes = {};  ///< Of a start tag: what follows the name.
};

/// Cuts HTML into tags and text the lenient way browsers do, in linear time. Character references
/// are left in the text; a "<" that begins no tag is text.
class HtmlTokenizer final {
public:
    /// The text must outlive the tokenizer and its tokens.
    explicit HtmlTokenizer(QStringView html);

    [[nodiscard]] HtmlToken next();

    /// Goes on behind the end tag of this name, or to the end of the document.
    void skipPast(QStringView endTag);

private:
    [[nodiscard]] QChar at(qsizetype position) const;
    [[nodiscard]] HtmlToken text();
    [[nodiscard]] HtmlToken tag(qsizetype nameStart, HtmlTokenKind kind);
    [[nodiscard]] HtmlToken comment();
    [[nodiscard]] HtmlToken declaration();
    [[nodiscard]] bool beginsMarkup(qsizetype position) const;
    [[nodiscard]] qsizetype tagEnd(qsizetype from) const;

    QStringView m_html;
    qsizetype m_position = 0;
    qsizetype m_lastTagEnd = -1;
};

/// Calls the function with each attribute's name and value, the value as written.
void forEachAttribute(QStringView attributes,
                      const std::function<void(QStringView name, QStringView value)>& use);

/// Resolves numeric and the five elementary named character references.
[[nodiscard]] QString withoutCharacterReferences(QStringView text);

}  // namespace quillo

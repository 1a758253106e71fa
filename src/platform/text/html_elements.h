// SPDX-License-Identifier: MIT
#pragma once

#include <QLatin1StringView>
#include <QStringView>

namespace quillo {

/// What an element does to the text around and inside it.
enum class HtmlRole {
    Inline,
    Block,
    Paragraph,  ///< A block that the next block closes.
    LineBreak,
    List,
    OrderedList,
    ListItem,
    Table,
    Row,
    Cell,
    Void,     ///< Has no contents and leaves no text.
    Hidden,   ///< Its contents are no text.
    RawText,  ///< Its contents are no text, and not even markup.
};

struct HtmlElement {
    QLatin1StringView name;
    HtmlRole role = HtmlRole::Inline;
    QLatin1StringView style = {};  ///< What the element means in terms of CSS.
    bool preservesSpace = false;
};

/// The element of this name, written in any case; an inline one without effect when unknown.
[[nodiscard]] const HtmlElement& htmlElement(QStringView name);

[[nodiscard]] bool isBlockRole(HtmlRole role);

}  // namespace quillo

// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>

namespace quillo {

/// What a control word asks of the reader.
enum class RtfAction {
    None,
    SkipGroup,  ///< A destination that is no part of the text.
    KeepGroup,  ///< A destination whose contents belong to the text around it.
    FontTable,
    ColorTable,
    UnicodePair,  ///< \upr: the same text twice, ...
    UnicodeHalf,  ///< ... and \ud: the better one of the two.
    Field,
    FieldInstruction,
    FieldResult,
    Character,  ///< Stands for the UTF-16 unit in `value`.
    Paragraph,
    Section,
    Cell,
    Row,
    NestedRow,
    Unicode,
    UnicodeSkip,
    CodePage,         ///< The page is the word's number.
    DocumentCharset,  ///< The page is in `value`.
    DefaultFont,
    Font,
    FontCharset,
    FontSize,
    Red,
    Green,
    Blue,
    Plain,
    Bold,
    Italic,
    Underline,
    UnderlineOff,
    StrikeOut,
    Hidden,
    Foreground,
    Background,
};

struct RtfKeyword {
    RtfAction action = RtfAction::None;
    int value = 0;
};

/// The meaning of a control word, for the words that matter to text.
[[nodiscard]] RtfKeyword rtfKeyword(QByteArrayView word);

}  // namespace quillo

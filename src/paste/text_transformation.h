// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <optional>
#include <span>

#include "base/all_cases.h"
#include "model/clip.h"

namespace quillo {

/// What a clip's text can be made into when it is copied out.
enum class TextTransformation : quint8 {
    PlainText,
    Lowercase,
    Uppercase,
    TitleCase,
    SentenceCase,
    Trim,
    UrlSanitize,
    RemoveLineBreaks,
    AddLineBreaks,
};

/// The nine transformations in the order of the menu.
template <>
[[nodiscard]] std::span<const TextTransformation> allCases<TextTransformation>();

/// What the button says; also the raw value.
[[nodiscard]] QString label(TextTransformation transformation);
/// None for a text that is no label; upper and lower case differ.
[[nodiscard]] std::optional<TextTransformation> textTransformationFromRaw(QStringView raw);

/// What is offered for a clip of that kind; all of them for an unknown kind, none for an image.
[[nodiscard]] std::span<const TextTransformation> availableTransformations(
    std::optional<ClipType> kind);

}  // namespace quillo

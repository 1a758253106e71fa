// SPDX-License-Identifier: MIT
#include "paste/text_transformation.h"

#include <algorithm>
#include <utility>

namespace quillo {
namespace {

using enum TextTransformation;

constexpr TextTransformation kCases[] = {PlainText,   Lowercase,        Uppercase,
                                         TitleCase,   SentenceCase,     Trim,
                                         UrlSanitize, RemoveLineBreaks, AddLineBreaks};

constexpr TextTransformation kForFiles[] = {PlainText, UrlSanitize, Trim, Lowercase, Uppercase};

constexpr const char* kLabels[] = {"Plain Text",   "lowercase",          "UPPERCASE",
                                   "Title Case",   "Sentence case",      "Trim Whitespace",
                                   "Sanitize URL", "Remove Line Breaks", "Add Line Breaks"};

static_assert(std::size(kLabels) == std::size(kCases));

}  // namespace

template <>
std::span<const TextTransformation> allCases<TextTransformation>() {
    return kCases;
}

QString label(TextTransformation transformation) {
    return QLatin1StringView(kLabels[std::to_underlying(transformation)]);
}

std::optional<TextTransformation> textTransformationFromRaw(QStringView raw) {
    const auto found = std::ranges::find_if(
        kCases, [raw](TextTransformation transformation) { return raw == label(transformation); });
    return found == std::end(kCases) ? std::nullopt : std::optional(*found);
}

std::span<const TextTransformation> availableTransformations(std::optional<ClipType> kind) {
    if (kind == ClipType::Image) {
        return {};
    }
    return kind == ClipType::FileUrl ? std::span<const TextTransformation>(kForFiles) : kCases;
}

}  // namespace quillo

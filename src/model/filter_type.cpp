// SPDX-License-Identifier: MIT
#include "model/filter_type.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/color_text.h"
#include "model/clip.h"
#include "model/filter_mask.h"

namespace quillo {
namespace {

struct FilterDescription {
    FilterType filter;
    const char* rawValue;
    const char* label;
    const char* icon;
    const char* color;
};

using enum FilterType;

constexpr FilterDescription kDescriptions[] = {
    {Text, "text", "Text", "doc.text", "#4D96FF"},
    {Link, "link", "Link", "link", "#3498DB"},
    {RichText, "richText", "Rich Text", "doc.richtext", "#9B59B6"},
    {Html, "html", "HTML", "globe", "#FF8E72"},
    {Image, "image", "Image", "photo", "#6BCB77"},
    {Color, "color", "Color", "paintpalette", "#FF6B6B"},
    {AllFiles, "allFiles", "Files", "doc", "#95A5A6"},
    {Folder, "folder", "Folder", "folder", "#F39C12"},
    {Pdf, "pdf", "PDF", "doc.text.fill", "#E74C3C"},
    {Word, "word", "Word", "doc.fill", "#2B7CE9"},
    {Excel, "excel", "Excel", "tablecells.fill", "#27AE60"},
    {Powerpoint, "powerpoint", "PowerPoint", "rectangle.fill.on.rectangle.fill", "#E67E22"},
    {Csv, "csv", "CSV", "tablecells", "#27AE60"},
    {Archive, "archive", "Archive", "doc.zipper", "#7F8C8D"},
    {Audio, "audio", "Audio", "waveform", "#E91E63"},
    {Video, "video", "Video", "film", "#00BCD4"},
};

constexpr auto kCases = [] {
    std::array<FilterType, std::size(kDescriptions)> cases{};
    std::ranges::transform(kDescriptions, cases.begin(), &FilterDescription::filter);
    return cases;
}();

static_assert(std::ranges::is_sorted(kCases) && kCases.back() == FilterType(kCases.size() - 1));

const FilterDescription& describe(FilterType filter) {
    return kDescriptions[std::to_underlying(filter)];
}

}  // namespace

template <>
std::span<const FilterType> allCases<FilterType>() {
    return kCases;
}

QString rawValue(FilterType filter) {
    return QLatin1StringView(describe(filter).rawValue);
}

std::optional<FilterType> filterTypeFromRaw(QStringView raw) {
    const auto found = std::ranges::find_if(kDescriptions, [raw](const FilterDescription& row) {
        return raw == QLatin1StringView(row.rawValue);
    });
    return found == std::end(kDescriptions) ? std::nullopt : std::optional(found->filter);
}

QString label(FilterType filter) {
    return QLatin1StringView(describe(filter).label);
}

QString icon(FilterType filter) {
    return QLatin1StringView(describe(filter).icon);
}

QColor defaultColor(FilterType filter) {
    return colorFromHex(QLatin1StringView(describe(filter).color)).value_or(QColor());
}

bool matches(const Clip& clip, FilterType filter) {
    return (clip.filterMask() & filterBit(filter)) != 0;
}

FilterType filterTypeOf(const Clip& clip) {
    return filterTypeOfMask(clip.filterMask());
}

Condition filterCondition(FilterType filter) {
    return {std::to_underlying(ClipAttribute::FilterMask), Condition::Operator::HasAnyBit,
            Value(qint64{filterBit(filter)})};
}

}  // namespace quillo

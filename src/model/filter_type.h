// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QString>
#include <optional>

#include "base/all_cases.h"
#include "model/store/object_context.h"

namespace quillo {

class Clip;

/// What the filter chips tell apart: finer than the stored kind. A case's position is also its bit
/// in the stored mask, so the order of the cases never changes.
enum class FilterType : quint8 {
    Text,
    Link,
    RichText,
    Html,
    Image,
    Color,
    AllFiles,
    Folder,
    Pdf,
    Word,
    Excel,
    Powerpoint,
    Csv,
    Archive,
    Audio,
    Video,
};

/// The sixteen filters in the chips' own order.
template <>
[[nodiscard]] std::span<const FilterType> allCases<FilterType>();

/// The text that settings keys are built from ("richText").
[[nodiscard]] QString rawValue(FilterType filter);
/// None for a text that is no raw value; upper and lower case differ.
[[nodiscard]] std::optional<FilterType> filterTypeFromRaw(QStringView raw);

/// What the chip says ("Rich Text").
[[nodiscard]] QString label(FilterType filter);
/// The name of the symbol ("doc.richtext").
[[nodiscard]] QString icon(FilterType filter);
[[nodiscard]] QColor defaultColor(FilterType filter);

/// Whether a clip passes a filter. Reads the stored mask of a saved clip and no text; computed
/// from the values for one with unsaved changes.
[[nodiscard]] bool matches(const Clip& clip, FilterType filter);

/// The one filter that describes a clip best; costs what matches() costs.
[[nodiscard]] FilterType filterTypeOf(const Clip& clip);

/// The condition that gives a filter's clips in a fetch; the index answers it without the rows.
[[nodiscard]] Condition filterCondition(FilterType filter);

}  // namespace quillo

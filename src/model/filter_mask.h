// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <optional>

#include "model/filter_type.h"

namespace quillo {

/// What the filters look at in a clip.
struct FilterInputs {
    qint64 rawType = 0;
    std::optional<QString> plaintext;
    std::optional<QString> urlString;
    std::optional<QString> fileUti;
    std::optional<QString> fileName;
};

/// Raise it with every change of the rule below: stores compute their masks anew when they are
/// opened by a program whose version differs.
inline constexpr int kFilterRuleVersion = 1;

/// The filters that a clip matches, one bit each (1 << FilterType). Never 0.
[[nodiscard]] quint32 filterMaskOf(const FilterInputs& inputs);

[[nodiscard]] constexpr quint32 filterBit(FilterType filter) {
    return quint32{1} << quint32(filter);
}

/// The filter that describes a clip with this mask best.
[[nodiscard]] FilterType filterTypeOfMask(quint32 mask);

}  // namespace quillo

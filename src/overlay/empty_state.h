// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <optional>

#include "model/filter_type.h"

namespace quillo {

/// What the panel says when there is no card to show.
struct EmptyState {
    QString symbol;
    QString title;
    QString subtitle;

    friend bool operator==(const EmptyState&, const EmptyState&) = default;
};

/// searchText as typed; groupTitle is the chosen group's name, empty for one without a name and
/// none without a group.
[[nodiscard]] EmptyState emptyStateFor(const QString& searchText,
                                       std::optional<FilterType> typeFilter,
                                       const std::optional<QString>& groupTitle);

}  // namespace quillo

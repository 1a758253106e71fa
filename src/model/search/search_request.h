// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QUuid>
#include <array>
#include <optional>

#include "model/filter_type.h"

namespace quillo {

/// Which texts of a clip are searched, and what comes first.
enum class SearchRule : quint8 {
    AnyText,    ///< Each of its texts and the name of its source program; pinned clips first.
    FirstText,  ///< The first that is not empty of plaintext, urlString and fileName, and nothing
                ///< else; newest first, pinned or not.
    AnyField,   ///< Each of these three; newest first, pinned or not.
};

/// What narrows the history.
struct ClipCriteria {
    QString searchText;  ///< White space and line breaks around it are left out.
    std::optional<FilterType> typeFilter;
    /// The members of the chosen group in its order; none without a group. They keep that order,
    /// while the whole history shows pinned clips first and each newest first.
    std::optional<QList<QUuid>> group = {};
    /// But for AnyText the answer to an empty search text lists every clip.
    SearchRule rule = SearchRule::AnyText;
    /// Has no effect within a group.
    bool isOnlyPinned = false;

    /// Whether anything is left out or put in another order than the history's own.
    [[nodiscard]] bool isNarrow() const {
        return !searchText.trimmed().isEmpty() || typeFilter || group ||
               rule != SearchRule::AnyText || isOnlyPinned;
    }

    friend bool operator==(const ClipCriteria&, const ClipCriteria&) = default;
};

/// The clips that are shown first, known before the rest of the answer.
struct SearchPage {
    quint64 number = 0;  ///< Of the request.
    QList<QUuid> ids;    ///< At most kSearchPageSize, in display order.
};

/// The whole answer.
struct SearchResult {
    quint64 number = 0;
    /// In display order. Not filled for the whole history, which the store itself lists at once.
    QList<QUuid> ids;
    qsizetype total = 0;
    std::array<qsizetype, 5> kindCounts{};  ///< For each ClipType how many of them are of it.
};

inline constexpr qsizetype kSearchPageSize = 50;

}  // namespace quillo

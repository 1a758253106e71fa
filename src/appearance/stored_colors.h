// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QList>
#include <QMap>
#include <optional>

#include "model/clip.h"
#include "model/filter_type.h"
#include "platform/user_defaults.h"

namespace quillo {

using KindColors = QMap<ClipType, QColor>;
using KindOpacities = QMap<ClipType, double>;
using FilterColors = QMap<FilterType, QColor>;
using FilterVisibility = QMap<FilterType, bool>;

/// How much of a kind's colour goes into its card unless the person chose otherwise.
inline constexpr double kDefaultBackgroundOpacity = 0.15;

/// Families of settings keys: a prefix, then the raw value of a kind ("3") or a filter ("link").
namespace setting {
inline const QString kPanelOpacity = QStringLiteral("panelOpacity");
inline const QString kPanelWidth = QStringLiteral("panelWidth");
inline const QString kItemOpacity = QStringLiteral("itemOpacity");
inline const QString kPanelBackground = QStringLiteral("panelBackgroundColor");
inline const QString kFilterOrder = QStringLiteral("filterChipOrder");
inline const QString kFilterVisible = QStringLiteral("filterChipVisible_");
inline const QString kFilterBadgeColor = QStringLiteral("filterBadgeColor_");
inline const QString kKindColor = QStringLiteral("clipTypeColor_");
inline const QString kKindBackground = QStringLiteral("clipTypeBgColor_");
inline const QString kKindOpacity = QStringLiteral("clipTypeBgOpacity_");

[[nodiscard]] QString keyFor(const QString& prefix, ClipType kind);
[[nodiscard]] QString keyFor(const QString& prefix, FilterType filter);
}  // namespace setting

/// The readers of what ClipTypeColorManager holds. A value that is absent, of the wrong type or
/// no colour gives the default, or no entry where there is none.

[[nodiscard]] std::optional<QColor> storedColor(const UserDefaults& defaults, const QString& key);
/// "panelOpacity", "panelWidth" or "itemOpacity"; 1 by default.
[[nodiscard]] double storedFactor(const UserDefaults& defaults, const QString& key);
/// One entry for every kind; prefix names the family.
[[nodiscard]] KindColors storedKindColors(const UserDefaults& defaults, const QString& prefix);
[[nodiscard]] KindOpacities storedKindOpacities(const UserDefaults& defaults);
/// Holds only what the person chose.
[[nodiscard]] FilterColors storedBadgeColors(const UserDefaults& defaults);
/// Every filter once: the stored ones first, the others after them in their own order.
[[nodiscard]] QList<FilterType> storedFilterOrder(const UserDefaults& defaults);
/// One entry for every filter.
[[nodiscard]] FilterVisibility storedFilterVisibility(const UserDefaults& defaults);

[[nodiscard]] QList<FilterType> defaultFilterOrder();
[[nodiscard]] FilterVisibility defaultFilterVisibility();

/// The list with the elements at those positions taken out and put, in their order, before the
/// element that stood at destination; the list's length means its end. A position that the list
/// does not have is passed over.
[[nodiscard]] QList<FilterType> movedFilters(const QList<FilterType>& filters,
                                             const QList<int>& sources, int destination);

}  // namespace quillo

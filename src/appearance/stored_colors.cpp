// SPDX-License-Identifier: MIT
#include "appearance/stored_colors.h"

#include <algorithm>
#include <utility>

#include "base/color_text.h"

namespace quillo {

namespace setting {

QString keyFor(const QString& prefix, ClipType kind) {
    return prefix + QString::number(std::to_underlying(kind));
}

QString keyFor(const QString& prefix, FilterType filter) {
    return prefix + rawValue(filter);
}

}  // namespace setting

namespace {

bool isShownByDefault(FilterType filter) {
    switch (filter) {
        case FilterType::Text:
        case FilterType::Link:
        case FilterType::Html:
        case FilterType::Image:
        case FilterType::AllFiles:
            return true;
        default:
            return false;
    }
}

void appendOnce(QList<FilterType>& order, FilterType filter) {
    if (!order.contains(filter)) {
        order.append(filter);
    }
}

}  // namespace

std::optional<QColor> storedColor(const UserDefaults& defaults, const QString& key) {
    const std::optional<QString> text = defaults.string(key);
    return text ? colorFromHex(*text) : std::nullopt;
}

double storedFactor(const UserDefaults& defaults, const QString& key) {
    return defaults.real(key).value_or(1.0);
}

KindColors storedKindColors(const UserDefaults& defaults, const QString& prefix) {
    KindColors colors;
    for (const ClipType kind : kClipTypes) {
        const auto stored = storedColor(defaults, setting::keyFor(prefix, kind));
        colors.insert(kind, stored.value_or(defaultColor(kind)));
    }
    return colors;
}

KindOpacities storedKindOpacities(const UserDefaults& defaults) {
    KindOpacities opacities;
    for (const ClipType kind : kClipTypes) {
        const auto stored = defaults.real(setting::keyFor(setting::kKindOpacity, kind));
        opacities.insert(kind, stored.value_or(kDefaultBackgroundOpacity));
    }
    return opacities;
}

FilterColors storedBadgeColors(const UserDefaults& defaults) {
    FilterColors colors;
    for (const FilterType filter : allCases<FilterType>()) {
        const QString key = setting::keyFor(setting::kFilterBadgeColor, filter);
        if (const std::optional<QColor> stored = storedColor(defaults, key)) {
            colors.insert(filter, *stored);
        }
    }
    return colors;
}

QList<FilterType> storedFilterOrder(const UserDefaults& defaults) {
    QList<FilterType> order;
    const QStringList stored = defaults.strings(setting::kFilterOrder).value_or(QStringList());
    for (const QString& raw : stored) {
        if (const std::optional<FilterType> filter = filterTypeFromRaw(raw)) {
            appendOnce(order, *filter);
        }
    }
    for (const FilterType filter : allCases<FilterType>()) {
        appendOnce(order, filter);
    }
    return order;
}

FilterVisibility storedFilterVisibility(const UserDefaults& defaults) {
    FilterVisibility visibility = defaultFilterVisibility();
    for (auto it = visibility.begin(); it != visibility.end(); ++it) {
        const auto stored = defaults.boolean(setting::keyFor(setting::kFilterVisible, it.key()));
        it.value() = stored.value_or(it.value());
    }
    return visibility;
}

QList<FilterType> defaultFilterOrder() {
    const std::span<const FilterType> all = allCases<FilterType>();
    return {all.begin(), all.end()};
}

FilterVisibility defaultFilterVisibility() {
    FilterVisibility visibility;
    for (const FilterType filter : allCases<FilterType>()) {
        visibility.insert(filter, isShownByDefault(filter));
    }
    return visibility;
}

QList<FilterType> movedFilters(const QList<FilterType>& filters, const QList<int>& sources,
                               int destination) {
    QList<FilterType> before;
    QList<FilterType> moved;
    QList<FilterType> after;
    for (int i = 0; i < filters.size(); ++i) {
        QList<FilterType>& part = sources.contains(i) ? moved : (i < destination ? before : after);
        part.append(filters.at(i));
    }
    return before + moved + after;
}

}  // namespace quillo

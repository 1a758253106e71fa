// SPDX-License-Identifier: MIT
#include "app/updates/version_order.h"

#include <algorithm>
#include <vector>

namespace quillo {
namespace {

bool isDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

bool isLetter(QChar c) {
    return c.isLetter();
}

// Runs of digits and runs of letters; everything else only separates.
std::vector<QStringView> partsOf(QStringView version) {
    const qsizetype build = version.indexOf(u'+');
    version = build < 0 ? version : version.first(build);
    std::vector<QStringView> parts;
    for (qsizetype start = 0; start < version.size();) {
        const auto isOfPart = isDigit(version[start]) ? isDigit : isLetter;
        qsizetype end = start;
        while (end < version.size() && isOfPart(version[end])) {
            ++end;
        }
        if (end > start) {
            parts.push_back(version.sliced(start, end - start));
        }
        start = std::max(end, start + 1);
    }
    return parts;
}

QStringView withoutZeros(QStringView digits) {
    const auto* first = std::ranges::find_if(digits, [](QChar c) { return c != u'0'; });
    return digits.sliced(first - digits.begin());
}

std::strong_ordering compareTexts(QStringView left, QStringView right) {
    return left.compare(right, Qt::CaseInsensitive) <=> 0;
}

std::strong_ordering compareParts(QStringView left, QStringView right) {
    const bool isNumber = isDigit(left.front());
    if (isNumber != isDigit(right.front())) {
        return isNumber ? std::strong_ordering::greater : std::strong_ordering::less;
    }
    if (!isNumber) {
        return compareTexts(left, right);
    }
    left = withoutZeros(left);
    right = withoutZeros(right);
    return left.size() != right.size() ? left.size() <=> right.size() : compareTexts(left, right);
}

}  // namespace

std::strong_ordering compareVersions(QStringView left, QStringView right) {
    const std::vector<QStringView> leftParts = partsOf(left);
    const std::vector<QStringView> rightParts = partsOf(right);
    const QStringView missing = u"0";
    for (size_t i = 0; i < std::max(leftParts.size(), rightParts.size()); ++i) {
        const auto order = compareParts(i < leftParts.size() ? leftParts[i] : missing,
                                        i < rightParts.size() ? rightParts[i] : missing);
        if (order != std::strong_ordering::equal) {
            return order;
        }
    }
    return std::strong_ordering::equal;
}

}  // namespace quillo

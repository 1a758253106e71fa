// SPDX-License-Identifier: MIT
#include "capture/sensitive_filter.h"

#include <unicode/regex.h>

#include <algorithm>
#include <array>
#include <memory>

namespace quillo {
namespace {

// Six digits and at most one line terminator: nothing longer needs the regular expression.
constexpr qsizetype kLongestCode = 16;

bool isOneTimeCode(const QString& text) {
    if (text.size() > kLongestCode) {
        return false;
    }
    UErrorCode status = U_ZERO_ERROR;
    static const std::unique_ptr<const icu::RegexPattern> pattern(
        icu::RegexPattern::compile(UNICODE_STRING_SIMPLE("^\\d{6}$"), 0, status));
    if (!pattern) {
        return false;
    }
    const icu::UnicodeString input(false, reinterpret_cast<const char16_t*>(text.utf16()),
                                   static_cast<int32_t>(text.size()));
    const std::unique_ptr<icu::RegexMatcher> matcher(pattern->matcher(input, status));
    return U_SUCCESS(status) && matcher->find();
}

struct Marker {
    QLatin1StringView text;  ///< In lower case.
    qsizetype signAt;        ///< Its rarest character: where that is found, the rest is looked at.
};

constexpr std::array kMarkers = {Marker{QLatin1StringView("password="), 8},
                                 Marker{QLatin1StringView("authorization: bearer"), 13},
                                 Marker{QLatin1StringView("api_key="), 7},
                                 Marker{QLatin1StringView("secret="), 6}};

// Lower-casing all of a long text costs more than everything else that is done with it.
bool contains(const QString& text, const Marker& marker) {
    const QChar sign = marker.text.at(marker.signAt);
    for (qsizetype at = text.indexOf(sign); at >= 0; at = text.indexOf(sign, at + 1)) {
        const qsizetype begin = at - marker.signAt;
        if (begin >= 0 && text.mid(begin, marker.text.size()).toLower() == marker.text) {
            return true;
        }
    }
    return false;
}

}  // namespace

bool isSensitive(const QString& text) {
    if (isOneTimeCode(text) || text.startsWith(QLatin1StringView("otpauth://"))) {
        return true;
    }
    return std::any_of(kMarkers.begin(), kMarkers.end(),
                       [&](const Marker& marker) { return contains(text, marker); });
}

}  // namespace quillo
